// Prints the description of the protocol and of the properties.
#include <cstdio>
#include <exception>

#include "description/description_file.h"

int main() {
    try {
        return std::puts(Morquil::Description::DescribeAsJson().dump(2).c_str()) < 0 ? 1 : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "morquil-describe: %s\n", error.what());
        return 1;
    }
}
