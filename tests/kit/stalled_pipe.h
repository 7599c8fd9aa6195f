#pragma once

#include <cstdint>
#include <string>

#include "tests/kit/temporary_folder.h"

namespace Morquil::Testing {

/// A named pipe whose writer writes only what the test says and stays open until the end of the scope.
class StalledPipe {
public:
    StalledPipe();
    ~StalledPipe();
    StalledPipe(const StalledPipe&) = delete;
    StalledPipe& operator=(const StalledPipe&) = delete;

    /// What a reader opens, in UTF-8.
    const std::string& Path() const { return path_; }
    /// On Windows a reader must have opened the pipe, or open it soon.
    void Write(const std::string& text) const;

private:
    const TemporaryFolder folder_;
    const std::string path_;
    const std::intptr_t pipe_;
};

}  // namespace Morquil::Testing
