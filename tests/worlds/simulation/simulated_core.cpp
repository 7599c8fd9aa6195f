// The core's clock, sections, conditions, events and threads for a third system: one whose scheduler follows a seed.
#include <cstdint>
#include <new>

#include "core/clock.h"
#include "core/condition.h"
#include "core/critical_section.h"
#include "core/native_event.h"
#include "core/thread.h"
#include "tests/worlds/simulation/scheduler.h"

namespace QRN::Core {
namespace {

using Morquil::Testing::Worlds::Scheduler;

Scheduler& World() {
    return Scheduler::Instance();
}

/// Replaces the system's own in place.
struct Section {
    ThreadId owner;
    unsigned depth;
};
static_assert(sizeof(Section) <= sizeof(NativeCriticalSection));

/// How often all waiting threads have been woken.
using Wakes = std::uintptr_t;
static_assert(sizeof(Wakes) <= sizeof(NativeCondition));

struct SimulatedEvent {
    bool signalled = false;
};

template <class Simulated, class Native>
Simulated& In(Native& native) {
    return *std::launder(reinterpret_cast<Simulated*>(&native));
}

}  // namespace

std::uint32_t CriticalSection::Initialise() {
    new (static_cast<void*>(&native)) Section{};
    return 0;
}

void CriticalSection::Enter() {
    Section& section = In<Section>(native);
    if (section.owner != 0 && section.owner != World().Current()) {
        World().Block([&] { return section.owner == 0; });
    }
    section.owner = World().Current();
    ++section.depth;
}

void CriticalSection::Leave() {
    Section& section = In<Section>(native);
    if (--section.depth == 0) {
        section.owner = 0;
    }
}

void CriticalSection::Delete() {}

Condition::Condition() {
    new (static_cast<void*>(&native_)) Wakes{0};
}

Condition::~Condition() = default;

void Condition::Wait(Lockable& lockable) {
    const Wakes& wakes = In<Wakes>(native_);
    const Wakes before = wakes;
    lockable.section_.Leave();
    World().Block([&] { return wakes != before; });
    lockable.section_.Enter();
}

void Condition::WakeAll() {
    ++In<Wakes>(native_);
}

void* CreateNativeEvent(std::uint32_t& error) {
    error = 0;
    return new SimulatedEvent;
}

void CloseNativeEvent(void* handle) {
    delete static_cast<SimulatedEvent*>(handle);
}

std::uint32_t SetNativeEvent(void* handle) {
    static_cast<SimulatedEvent*>(handle)->signalled = true;
    return 0;
}

std::uint32_t WaitNativeEvent(void* handle, std::int32_t milliseconds, bool& timedOut) {
    const SimulatedEvent& event = *static_cast<SimulatedEvent*>(handle);
    World().Block([&] { return event.signalled; },
                  milliseconds < 0 ? Morquil::Testing::Worlds::never : World().Now() + milliseconds);
    timedOut = !event.signalled;
    return 0;
}

Clock::time_point Now() {
    return Clock::time_point(std::chrono::milliseconds(World().Now()));
}

ThreadId CurrentThreadId() {
    return World().Current();
}

std::uint32_t StartThread(ThreadHandle& thread, ThreadFunction function, void* argument, ThreadId* id) {
    thread.native = World().Start(function, argument);
    if (id != nullptr) {
        *id = thread.native;
    }
    return 0;
}

std::uint32_t JoinThread(ThreadHandle& thread, std::uint32_t* exitCode, ThreadId exemptId) {
    std::uint32_t result = 0;
    if (thread && CurrentThreadId() != exemptId) {
        World().Block([&] { return World().HasEnded(thread.native); });
        result = World().ExitCode(thread.native);
    }
    thread.native = 0;
    if (exitCode != nullptr) {
        *exitCode = result;
    }
    return 0;
}

}  // namespace QRN::Core
