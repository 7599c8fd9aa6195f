#include "core/critical_section.h"

namespace QRN::Core {

std::uint32_t CriticalSection::Initialise() {
    InitializeCriticalSection(&native);
    return 0;
}

void CriticalSection::Enter() {
    EnterCriticalSection(&native);
}

void CriticalSection::Leave() {
    LeaveCriticalSection(&native);
}

void CriticalSection::Delete() {
    DeleteCriticalSection(&native);
}

}  // namespace QRN::Core
