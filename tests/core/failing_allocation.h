#pragma once

namespace QRN::Core::Testing {

/// Makes the next allocation that may answer null (`new (std::nothrow)`) of this process answer null, once.
void FailNextAllocation();

}  // namespace QRN::Core::Testing
