// The binary contract as tables that tests walk.
#pragma once

#include <string>
#include <vector>

#include "MorquilAPI.h"

namespace Morquil::Test {

/// 'abcd' as a number: the first character in the most significant byte.
constexpr int FourCharacters(const char (&text)[5]) {
    unsigned value = 0;
    for (int i = 0; i < 4; ++i)
        value = (value << 8) | static_cast<unsigned char>(text[i]);
    return static_cast<int>(value);
}

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

}  // namespace Morquil::Test
