#include "properties/spelling.h"

namespace Morquil::Properties {
namespace {

bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

}  // namespace

std::string Spoken(std::string_view typeName) {
    std::string spoken;
    const auto isUpperAt = [&](std::size_t at) { return at < typeName.size() && IsUpper(typeName[at]); };
    for (std::size_t at = 0; at < typeName.size(); ++at) {
        const bool isUpper = isUpperAt(at);
        const bool belongsToAcronym = isUpper && (isUpperAt(at + 1) || at + 1 == typeName.size());
        const bool startsWord = isUpper && at != 0 && (!isUpperAt(at - 1) || !belongsToAcronym);
        if (startsWord) {
            spoken += ' ';
        }
        spoken += isUpper && !belongsToAcronym ? static_cast<char>(typeName[at] - 'A' + 'a') : typeName[at];
    }
    return spoken;
}

}  // namespace Morquil::Properties
