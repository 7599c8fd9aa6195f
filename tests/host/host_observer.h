#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/host/raw_com.h"

namespace Morquil::Test {

/// An object of the host's that the library calls: a table of functions, slot by slot, and what it was told.
/// Lives at least until the library has given all references back; the end of the test says so if it does not.
class HostObserver {
public:
    HostObserver(const HostObserver&) = delete;
    HostObserver& operator=(const HostObserver&) = delete;

    /// What the library is given.
    void* Get() { return &face_; }

    /// Waits up to `seconds` until `count` calls have been made. Returns: whether they were.
    bool AwaitCalls(std::size_t count, int seconds = 30);
    /// Waits up to 10 s until `condition` holds, which is asked after every call with the lock held.
    bool Await(const std::function<bool()>& condition, int seconds = 10);
    /// Waits up to 10 s until the library holds no reference.
    bool AwaitRelease();
    std::vector<std::string> Told();
    std::vector<std::string> TakeTold();

    using Act = std::function<void(const std::string& told)>;

    /// From now on run inside each call, after it has been noted; on the library's thread, which sees all that the
    /// test has done before.
    void InCall(Act act);

protected:
    using AnyFunction = void (*)();
    struct Face {
        const AnyFunction* table;
        HostObserver* self;
    };

    explicit HostObserver(const AnyFunction* table) : face_{table, this} {}
    ~HostObserver();

    static Result QueryInterface(Face* face, const Guid* iid, void** out);
    static std::uint32_t AddRef(Face* face);
    static std::uint32_t Release(Face* face);
    Result Note(const std::string& told);

    std::mutex lock_;
    std::vector<std::string> told_;

private:
    Face face_;
    std::condition_variable changed_;
    std::shared_ptr<Act> inCall_;
    std::uint32_t references_ = 0;  // the library's
};

/// Slot 3 tells "connected", slot 4 "disconnected" with the reason.
class ConnectionObserver final : public HostObserver {
public:
    ConnectionObserver();

private:
    static Result Connected(Face* face);
    static Result Disconnected(Face* face, std::int32_t reason);
};

/// Slot 3 tells the identifier of a property set.
class PropertyObserver final : public HostObserver {
public:
    PropertyObserver();

private:
    static Result PropertyChanged(Face* face, std::int32_t id);
};

}  // namespace Morquil::Test
