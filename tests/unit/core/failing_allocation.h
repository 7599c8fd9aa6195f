#pragma once

namespace Morquil::Testing {

/// Makes this process's next allocation that may return null (`new (std::nothrow)`) return null, once.
void FailNextAllocation();

}  // namespace Morquil::Testing
