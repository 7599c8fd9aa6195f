#include <sys/resource.h>

#include <algorithm>

#include "simulator/program/descriptor_limit.h"

namespace Morquil::Simulator {

std::size_t RaiseDescriptorLimit(std::size_t wanted) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_cur < wanted) {
        rlimit raised = limit;
        raised.rlim_cur = std::min<rlim_t>(wanted, limit.rlim_max);
        limit = setrlimit(RLIMIT_NOFILE, &raised) == 0 ? raised : limit;
    }
    return limit.rlim_cur;
}

}  // namespace Morquil::Simulator
