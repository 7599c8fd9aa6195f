#include "simulator/streams/record_file.h"

namespace Morquil::Simulator {

RecordFile::RecordFile(const std::string& name) {
    const auto stream = std::make_shared<std::ofstream>(name, std::ios::binary);
    if (*stream) {
        writer_.emplace(
            BackgroundWriter::Actions{
                // Flushed each time, so that the file lacks little, however the program ends.
                .write = [stream](const OutputPiece& piece) { return bool(*stream << piece.text << std::flush); },
                .noteDropped =
                    [](std::size_t) {
                        return OutputPiece{"# The recording ends here: the file could not be written in time.\n"};
                    }},
            pendingLimit);
    }
}

bool RecordFile::Write(const std::string& text) {
    if (!isComplete_) {
        return true;
    }
    isComplete_ = writer_->Write({text});
    return isComplete_;
}

bool RecordFile::Finish(BackgroundWriter::TimePoint deadline) {
    return writer_->Finish(deadline) && isComplete_;
}

}  // namespace Morquil::Simulator
