// Failed calls as exceptions.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

#include "MorquilAPI.h"

namespace morquil {

/// A call that failed. `what()` names the call and says why in words.
class Error : public std::runtime_error {
public:
    Error(std::string call, HRESULT result, const std::string& reason)
        : std::runtime_error(call + ": " + reason), call_(std::move(call)), result_(result) {}

    /// Interface and method, such as "VideoProcAmp::SetGain".
    const std::string& Call() const noexcept { return call_; }
    HRESULT Result() const noexcept { return result_; }

private:
    std::string call_;
    HRESULT result_;
};

/// The value of a getter is not known: the device has not reported it yet, this model does not report it, or the
/// connection has ended. From `SaveSettingsFile`: not all settings are known.
class NotKnown : public Error {
public:
    using Error::Error;
};

/// A setter has refused its value, and has queued nothing: an enumeration's number without a meaning, a channel or a
/// preset that does not exist, a text with a line end in it.
class InvalidArgument : public Error {
public:
    using Error::Error;
};

/// There is no property of this name.
class NoSuchProperty : public Error {
public:
    using Error::Error;
};

/// A value that the device does not accept now, or a property that it does not have. Nothing has been queued.
class NotOffered : public InvalidArgument {
public:
    using InvalidArgument::InvalidArgument;
};

/// A call that waits for the device, on the thread of the library that would have to report what became of it.
class WouldDeadlock : public Error {
public:
    using Error::Error;
};

namespace detail {

enum class CallKind { Get, Set };

inline std::string ReasonOf(CallKind kind, HRESULT result) {
    switch (result) {
        case E_FAIL:
            return kind == CallKind::Get
                       ? "the device has not reported the value"
                       : "not accepted: the library's thread cannot be woken, or there is no such property set";
        case E_INVALIDARG:
            return "the value is outside its bounds, or the text has a line end or a zero character in it";
        case E_POINTER:
            return "a pointer is null";
        case E_OUTOFMEMORY:
            return "out of memory";
        case E_NOINTERFACE:
            return "the object has no such interface";
        default: {
            char text[40];
            std::snprintf(text, sizeof text, "result 0x%08x", static_cast<unsigned>(result));
            return text;
        }
    }
}

/// S_FALSE is a success.
inline void Check(const char* call, HRESULT result, CallKind kind) {
    if (result >= 0) {
        return;
    }
    if (kind == CallKind::Get && result == E_FAIL) {
        throw NotKnown(call, result, ReasonOf(kind, result));
    }
    if (result == E_INVALIDARG) {
        throw InvalidArgument(call, result, ReasonOf(kind, result));
    }
    throw Error(call, result, ReasonOf(kind, result));
}

}  // namespace detail

}  // namespace morquil
