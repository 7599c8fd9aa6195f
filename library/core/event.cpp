#include "core/event.h"

#include "core/lock.h"
#include "core/native_event.h"

namespace QRN::Core {
namespace {

constexpr std::uint32_t invalidHandle = 6;
constexpr std::int32_t microsecondsPerMillisecond = 1000;

}  // namespace

Event::~Event() {
    if (handle_ != nullptr) {
        CloseNativeEvent(handle_);
    }
}

std::uint32_t Event::Create() {
    std::uint32_t error = 0;
    void* const created = CreateNativeEvent(error);
    if (created == nullptr) {
        return error;
    }
    if (handle_ != nullptr) {
        CloseNativeEvent(handle_);
    }
    handle_ = created;
    return 0;
}

std::uint32_t Event::Set(bool* wasSet) {
    std::uint32_t error = 0;
    // Testing and signalling are one step, so that only the first of several callers sees the event not yet signalled.
    const Lock lock(*this, error);
    if (error == 0 && wasSet != nullptr) {
        bool timedOut = false;
        error = Wait(0, timedOut);
        *wasSet = error == 0 && !timedOut;
    }
    if (error != 0) {
        return error;
    }
    return handle_ != nullptr ? SetNativeEvent(handle_) : invalidHandle;
}

std::uint32_t Event::Wait(std::int32_t microseconds, bool& timedOut) {
    timedOut = false;
    if (handle_ == nullptr) {
        return invalidHandle;
    }
    return WaitNativeEvent(handle_, microseconds < 0 ? -1 : microseconds / microsecondsPerMillisecond, timedOut);
}

}  // namespace QRN::Core
