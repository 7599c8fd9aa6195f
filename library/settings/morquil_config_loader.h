#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <string>

#include "core/lockable.h"
#include "core/thread_safety.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/text/cut_detector.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil {

class SettingsFileReader;

/// Plays a settings file back: queues its blocks on a client, as if a host had set all of their fields. The block table
/// says which blocks are played back; everything else in a file is ignored.
///
/// A file's input configuration is deliberately not played back: it would switch the device away from its current input
/// signal.
class MorquilConfigLoader final : private EveryBlockSink<MorquilConfigLoader> {
public:
    /// The most bytes read from a file. A block that is incomplete at this limit is dropped.
    static constexpr std::size_t longestFile = std::size_t{16} << 20;

    /// `client` must outlive the loader.
    explicit MorquilConfigLoader(MorquilTextProtocolClient& client) : client_(client) { parser_.SetSink(this); }

    /// Reads the file `path` (UTF-8) to its end. A block that the file does not finish is continued by the next file.
    /// Threads: any; a second load waits for the first, so that their lines do not mix.
    /// Returns: whether the file could be opened. A block for which there is no memory is dropped.
    bool Load(const std::string& path);

    /// Ends a load that is waiting for a pipe's writer. From now on no load waits for one.
    /// Threads: any. Returns at once.
    void Stop() { stopped_ = true; }

private:
    friend EveryBlockSink;

    void Play(SettingsFileReader& file) REQUIRES(lock_);
    void DropUnfinishedBlock() REQUIRES(lock_);

    /// The device's answers to these messages do not count as echoes of a setter: hosts are notified of them as of
    /// changes made elsewhere.
    template <class Set>
    void Queue(const Set& set) {
        try {
            auto message = std::make_unique<TextProtocolMessage<Set>>(set);
            ClearWhatWouldBeCut(*message);
            message->recordSentText = false;
            client_.Queue(std::move(message));
        } catch (const std::bad_alloc&) {
            // The rest of the file may still fit into memory. Throwing would leave the parser inside a block and spoil
            // the rest.
        }
    }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        if constexpr (factsOf<Description>.isPlayedBack) {
            Queue(set);
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override {}

    MorquilTextProtocolClient& client_;
    std::atomic<bool> stopped_ = false;
    QRN::Core::Lockable lock_;
    MorquilTextProtocolParser parser_ GUARDED_BY(lock_);
};

}  // namespace Morquil
