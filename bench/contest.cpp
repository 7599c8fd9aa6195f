#include "bench/contest.h"

#include <cstdlib>
#include <iostream>

namespace Morquil::Bench {

void RequireEqual(const std::string& left, const std::string& right, const char* names) {
    if (left != right) {
        std::cerr << names << " have different results\n" << left << "\n-----\n" << right << '\n';
        std::exit(1);
    }
}

}  // namespace Morquil::Bench
