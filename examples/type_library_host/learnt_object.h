// An object whose interface is known from the type library alone.
#pragma once

#include <initializer_list>
#include <string>

#include "type_library.h"

/// An argument as DispCallFunc takes it.
class Argument {
public:
    Argument(int value);         // a number, or an enumerated value
    Argument(BSTR text);         // a text that goes in
    Argument(IUnknown* object);  // an object that goes in
    Argument(int* out);          // where a number comes out
    Argument(void** out);        // where an object comes out

    VARIANT value{};
};

class LearntObject {
public:
    /// Takes one reference of `object` over, which must have the interface `type`.
    LearntObject(Type type, void* object) : type_(std::move(type)), object_(static_cast<IUnknown*>(object)) {}

    /// Calls a method by the slot that the type library tells, and throws std::runtime_error when it fails.
    void Call(const std::string& method, std::initializer_list<Argument> arguments) const;

    /// The same object through another interface.
    LearntObject As(Type type) const;

    IUnknown* Get() const { return object_.get(); }
    const Type& GetType() const { return type_; }

private:
    Type type_;
    Owned<IUnknown> object_;
};
