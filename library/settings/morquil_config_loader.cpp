#include "settings/morquil_config_loader.h"

#include <algorithm>
#include <array>

#include "core/lock.h"
#include "settings/settings_file.h"

namespace Morquil {

bool MorquilConfigLoader::Load(const std::string& path) {
    try {
        SettingsFileReader file(path, stopped_);
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

/// Ends every line with a line feed, even if the last line of the file lacks it.
void MorquilConfigLoader::Play(SettingsFileReader& file) {
    std::array<char, 4096> piece;
    char last = '\n';
    std::size_t left = longestFile;
    while (left > 0) {
        const std::size_t length = file.Read(piece.data(), std::min(piece.size(), left));
        if (length == 0) {
            break;
        }
        parser_.Feed(piece.data(), length);
        last = piece[length - 1];
        left -= length;
    }
    if (left == 0) {
        DropUnfinishedBlock();
    } else if (last != '\n') {
        parser_.Feed("\n", 1);
    }
}

/// The last line may have been cut off inside its value.
void MorquilConfigLoader::DropUnfinishedBlock() {
    parser_.SetSink(nullptr);
    parser_.Feed("\n\n", 2);
    parser_.SetSink(this);
}

}  // namespace Morquil
