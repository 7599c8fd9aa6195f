#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Morquil::Diagnosis {

/// What is wrong with the text of an address, such as a port in it, in a sentence without the address. Nothing if a
/// device may have this address.
std::optional<std::string> FaultOfAddress(std::string_view address);

}  // namespace Morquil::Diagnosis
