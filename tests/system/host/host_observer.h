#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/system/host/raw_com.h"

namespace Morquil::Testing {

/// An object of the host that the library calls: a table of functions, slot by slot, and its notifications. Lives at
/// least until the library has released all references; the end of the test fails if it does not.
class HostObserver {
public:
    HostObserver(const HostObserver&) = delete;
    HostObserver& operator=(const HostObserver&) = delete;

    /// The pointer for the library.
    void* Get() { return &object_; }

    /// Waits up to `seconds` until `count` calls have been made. Returns: whether they were.
    bool AwaitCalls(std::size_t count, int seconds = 30);
    /// Waits up to 10 s until `condition` holds; it is checked after every call with the lock held.
    bool Await(const std::function<bool()>& condition, int seconds = 10);
    /// Waits up to 10 s until the library holds no reference.
    bool AwaitRelease();
    std::vector<std::string> Notifications();
    std::vector<std::string> TakeNotifications();

    using Act = std::function<void(const std::string& notification)>;

    /// Runs from now on inside each call, after it has been recorded; on held by the library thread, which sees
    /// everything that the test has done before.
    void InCall(Act act);

protected:
    using AnyFunction = void (*)();
    struct ComObject {
        const AnyFunction* table;
        HostObserver* self;
    };

    explicit HostObserver(const AnyFunction* table) : object_{table, this} {}
    ~HostObserver();

    static Result MORQUIL_SLOT QueryInterface(ComObject* object, const Guid* iid, void** out);
    static std::uint32_t MORQUIL_SLOT AddRef(ComObject* object);
    static std::uint32_t MORQUIL_SLOT Release(ComObject* object);
    Result Note(const std::string& notification);

    std::mutex lock_;
    std::vector<std::string> notifications_;

private:
    ComObject object_;
    std::condition_variable changed_;
    std::shared_ptr<Act> inCall_;
    std::uint32_t references_ = 0;  // the library's
};

/// Slot 3 reports "connected", slot 4 "disconnected" with the reason.
class ConnectionObserver final : public HostObserver {
public:
    ConnectionObserver();

private:
    static Result MORQUIL_SLOT Connected(ComObject* object);
    static Result MORQUIL_SLOT Disconnected(ComObject* object, std::int32_t reason);
};

/// Slot 3 reports the identifier of a property set.
class PropertyObserver final : public HostObserver {
public:
    PropertyObserver();

private:
    static Result MORQUIL_SLOT PropertyChanged(ComObject* object, std::int32_t id);
};

}  // namespace Morquil::Testing
