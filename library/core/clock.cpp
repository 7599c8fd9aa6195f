#include "core/clock.h"

namespace QRN::Core {

Clock::time_point Now() {
    return Clock::now();
}

}  // namespace QRN::Core
