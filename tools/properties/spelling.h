#pragma once

#include <string>
#include <string_view>

namespace Morquil::Properties {

/// The last name in the compiler's text for a template argument: "... = a::b::Name]" or "... = a::b::Name; ...]".
constexpr std::string_view QualifiedName(std::string_view instance) {
    instance.remove_prefix(instance.find(" = ") + 3);
    return instance.substr(0, instance.find_first_of(";]"));
}
constexpr std::string_view LastName(std::string_view instance) {
    const std::string_view name = QualifiedName(instance);
    const std::size_t scope = name.rfind("::");
    return scope == std::string_view::npos ? name : name.substr(scope + 2);
}
/// The same, together with the name before it: "Type::Member".
constexpr std::string_view LastTwoNames(std::string_view instance) {
    const std::string_view name = QualifiedName(instance);
    return name.substr(name.rfind("::", name.rfind("::") - 1) + 2);
}

/// A type's name as people say it: "VideoMode" becomes "video mode", "SDIMode" becomes "SDI mode".
std::string Spoken(std::string_view typeName);

}  // namespace Morquil::Properties
