#include "settings/morquil_config_loader.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "core/lock.h"
#include "protocol/any_block.h"
#include "protocol/block_table.h"
#include "protocol/table/message.h"
#include "settings/settings_file.h"

namespace Morquil {

MorquilConfigLoader::MorquilConfigLoader(MorquilTextProtocolClient& client) : client_(client) {
    parser_.SetSink(this);
}

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

/// The device's answers to these messages do not count as echoes of a setter: hosts are notified of them as of changes
/// made elsewhere.
void MorquilConfigLoader::OnOtherBlock(std::size_t place, const void* changeSet) {
    if (!factsByPlace[place].isPlayedBack) {
        return;
    }
    try {
        std::unique_ptr<TextProtocolMessageBase> message = MakeMessage({place, changeSet});
        message->recordSentText = false;
        client_.Queue(place, std::move(message));
    } catch (const std::bad_alloc&) {
        // The rest of the file may still fit into memory. Throwing would leave the parser inside a block and spoil the
        // rest.
    }
}

}  // namespace Morquil
