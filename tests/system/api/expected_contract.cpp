#include "tests/system/api/expected_contract.h"

namespace Morquil::Testing {

std::vector<ExpectedInterface> ExpectedInterfaces() {
    std::vector<ExpectedInterface> list;
#define INTERFACE(name, iid, help) list.push_back({#name, iid, help, {}});
#define METHOD(interfaceName, name, parameters) list.back().methods.push_back({#name, #parameters});
#include "tests/system/api/expected_interfaces.inc"
#undef INTERFACE
#undef METHOD
    return list;
}

std::vector<ExpectedEnumeration> ExpectedEnumerations() {
    std::vector<ExpectedEnumeration> list;
#define ENUMERATION(name) list.push_back({#name, {}});
#define CONSTANT(enumeration, name, value) list.back().constants.push_back({#name, value});
#include "tests/system/api/expected_enumerations.inc"
#undef ENUMERATION
#undef CONSTANT
    return list;
}

}  // namespace Morquil::Testing
