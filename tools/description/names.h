// The names of types and constants, as compilers write them.
#pragma once

#include <string_view>

#include "properties/spelling.h"

namespace Morquil::Description {

template <class Named>
constexpr std::string_view TypeName() {
    return Properties::LastName(__PRETTY_FUNCTION__);
}

/// The name of an enumeration's constant; empty for a value without one.
template <auto constant>
constexpr std::string_view ConstantName() {
    const std::string_view name = Properties::LastName(__PRETTY_FUNCTION__);
    return name.front() == '(' ? std::string_view() : name;
}

}  // namespace Morquil::Description
