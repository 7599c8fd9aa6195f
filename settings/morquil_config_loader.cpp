#include "settings/morquil_config_loader.h"

#include <array>

#include "core/lock.h"

namespace Morquil {

bool MorquilConfigLoader::Load(const std::string& path) {
    try {
        SettingsFileReader file(path);
        if (!file.IsOpen()) {
            return false;
        }
        QRN::Core::Lock lock(lock_);
        Play(file);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// Every line gets its line feed, also a last one that lacks it.
void MorquilConfigLoader::Play(SettingsFileReader& file) {
    std::array<char, 4096> piece;
    char last = '\n';
    for (std::size_t length = file.Read(piece.data(), piece.size()); length != 0;
         length = file.Read(piece.data(), piece.size())) {
        parser_.Feed(piece.data(), length);
        last = piece[length - 1];
    }
    if (last != '\n') {
        parser_.Feed("\n", 1);
    }
}

}  // namespace Morquil
