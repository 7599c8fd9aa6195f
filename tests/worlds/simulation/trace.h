#pragma once

#include <string>
#include <string_view>

#include "tests/worlds/simulation/scheduler.h"

namespace Morquil::Testing::Worlds {

/// What happens in a world, one line for each event: when, on which thread, what. The first failure is kept separately.
class Trace {
public:
    void Note(std::string_view event) {
        const Scheduler& world = Scheduler::Instance();
        text_ += std::to_string(world.Now()) + " [" + std::to_string(world.Current()) + "] ";
        for (const char character : event) {
            character == '\n' ? text_ += "\\n" : text_ += character;
        }
        text_ += '\n';
    }
    void Fail(const std::string& what) {
        Note("FAILURE: " + what);
        failure_ = failure_.empty() ? what : failure_;
    }
    /// Fails unless `holds`.
    void Require(bool holds, const std::string& what) {
        if (!holds) {
            Fail(what);
        }
    }

    const std::string& Text() const { return text_; }
    /// Empty if nothing failed.
    const std::string& Failure() const { return failure_; }

private:
    std::string text_;
    std::string failure_;
};

}  // namespace Morquil::Testing::Worlds
