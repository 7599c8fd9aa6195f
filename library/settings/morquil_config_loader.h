#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include "core/lockable.h"
#include "core/thread_safety.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/sink.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil {

class SettingsFileReader;

/// Plays a settings file back: queues its blocks on a client, as if a host had set all of their fields. The block table
/// says which blocks are played back; everything else in a file is ignored.
///
/// A file's input configuration is deliberately not played back: it would switch the device away from its current input
/// signal.
class MorquilConfigLoader final : private IMorquilTextProtocolSink {
public:
    /// The most bytes read from a file. A block that is incomplete at this limit is dropped.
    static constexpr std::size_t longestFile = std::size_t{16} << 20;

    /// `client` must outlive the loader.
    explicit MorquilConfigLoader(MorquilTextProtocolClient& client);

    /// Reads the file `path` (UTF-8) to its end. A block that the file does not finish is continued by the next file.
    /// Threads: any; a second load waits for the first, so that their lines do not mix.
    /// Returns: whether the file could be opened. A block for which there is no memory is dropped.
    bool Load(const std::string& path);

    /// Ends a load that is waiting for a pipe's writer. From now on no load waits for one.
    /// Threads: any. Returns at once.
    void Stop() { stopped_ = true; }

private:
    void Play(SettingsFileReader& file) REQUIRES(lock_);
    void DropUnfinishedBlock() REQUIRES(lock_);

    void OnOtherBlock(std::size_t place, const void* changeSet) override;
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
