// The binary contract as tables that tests walk.
#pragma once

#include <string>
#include <vector>

#include "MorquilAPI.h"
#include "tests/kit/four_characters.h"

namespace Morquil::Testing {

struct ExpectedMethod {
    std::string name;
    std::string parameters;  // "(int*, int*)"
};

struct ExpectedInterface {
    std::string name;
    std::string iid;
    std::string help;
    std::vector<ExpectedMethod> methods;  // the first one is slot 3
};

struct ExpectedConstant {
    std::string name;
    int value;
};

struct ExpectedEnumeration {
    std::string name;
    std::vector<ExpectedConstant> constants;
};

std::vector<ExpectedInterface> ExpectedInterfaces();
std::vector<ExpectedEnumeration> ExpectedEnumerations();

}  // namespace Morquil::Testing
