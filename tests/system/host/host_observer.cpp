#include "tests/system/host/host_observer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <utility>

namespace Morquil::Testing {

HostObserver::~HostObserver() {
    EXPECT_TRUE(AwaitRelease()) << "the library keeps an observer";
}

bool HostObserver::Await(const std::function<bool()>& condition, int seconds) {
    std::unique_lock lock(lock_);
    return changed_.wait_for(lock, std::chrono::seconds(seconds), condition);
}

bool HostObserver::AwaitCalls(std::size_t count, int seconds) {
    return Await([&] { return notifications_.size() >= count; }, seconds);
}

bool HostObserver::AwaitRelease() {
    return Await([&] { return references_ == 0; });
}

std::vector<std::string> HostObserver::Notifications() {
    const std::lock_guard lock(lock_);
    return notifications_;
}

std::vector<std::string> HostObserver::TakeNotifications() {
    const std::lock_guard lock(lock_);
    return std::exchange(notifications_, {});
}

// The library queries only for the interfaces that it was given.
Result MORQUIL_SLOT HostObserver::QueryInterface(ComObject* /*object*/, const Guid* /*iid*/, void** out) {
    *out = nullptr;
    return noInterface;
}

std::uint32_t MORQUIL_SLOT HostObserver::AddRef(ComObject* object) {
    const std::lock_guard lock(object->self->lock_);
    return ++object->self->references_;
}

std::uint32_t MORQUIL_SLOT HostObserver::Release(ComObject* object) {
    HostObserver& self = *object->self;
    const std::lock_guard lock(self.lock_);
    EXPECT_GT(self.references_, 0U);
    self.changed_.notify_all();
    return --self.references_;
}

void HostObserver::InCall(Act act) {
    const std::lock_guard lock(lock_);
    inCall_ = std::make_shared<Act>(std::move(act));
}

Result HostObserver::Note(const std::string& notification) {
    std::shared_ptr<Act> act;
    {
        const std::lock_guard lock(lock_);
        notifications_.push_back(notification);
        act = inCall_;
        changed_.notify_all();
    }
    if (act != nullptr) {
        (*act)(notification);
    }
    return ok;
}

ConnectionObserver::ConnectionObserver()
    : HostObserver([] {
          static const AnyFunction table[] = {
              reinterpret_cast<AnyFunction>(&QueryInterface), reinterpret_cast<AnyFunction>(&AddRef),
              reinterpret_cast<AnyFunction>(&Release), reinterpret_cast<AnyFunction>(&Connected),
              reinterpret_cast<AnyFunction>(&Disconnected)};
          return table;
      }()) {}

Result MORQUIL_SLOT ConnectionObserver::Connected(ComObject* object) {
    return static_cast<ConnectionObserver*>(object->self)->Note("connected");
}

Result MORQUIL_SLOT ConnectionObserver::Disconnected(ComObject* object, std::int32_t reason) {
    return static_cast<ConnectionObserver*>(object->self)->Note("disconnected " + FourCharacterText(reason));
}

PropertyObserver::PropertyObserver()
    : HostObserver([] {
          static const AnyFunction table[] = {
              reinterpret_cast<AnyFunction>(&QueryInterface), reinterpret_cast<AnyFunction>(&AddRef),
              reinterpret_cast<AnyFunction>(&Release), reinterpret_cast<AnyFunction>(&PropertyChanged)};
          return table;
      }()) {}

Result MORQUIL_SLOT PropertyObserver::PropertyChanged(ComObject* object, std::int32_t id) {
    return static_cast<PropertyObserver*>(object->self)->Note(FourCharacterText(id));
}

}  // namespace Morquil::Testing
