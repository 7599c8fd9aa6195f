#pragma once

#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "simulator/streams/background_writer.h"

namespace Morquil::Simulator {

/// The file that `--record` names. A pipe without a reader does not block the program: the recording ends there, with a
/// comment that says so, because an incomplete recording cannot be replayed.
class RecordFile {
public:
    /// How many bytes may wait for the file.
    static constexpr std::size_t pendingLimit = std::size_t{16} * 1024 * 1024;

    explicit RecordFile(const std::string& name);

    bool IsOpen() const { return writer_.has_value(); }
    /// Returns: false, once, if the recording ends because this text could not be written.
    bool Write(const std::string& text);
    /// Waits until everything is written, but not beyond `deadline`.
    /// Returns: whether the file is complete.
    bool Finish(BackgroundWriter::TimePoint deadline);

private:
    std::optional<BackgroundWriter> writer_;
    bool isComplete_ = true;
};

}  // namespace Morquil::Simulator
