// An object whose interface is known from the type library alone.
#pragma once

#include <initializer_list>
#include <string>

#include "type_library.h"

/// An argument as DispCallFunc expects it.
class Argument {
public:
    Argument(int value);         // a number, or an enumerated value
    Argument(BSTR text);         // an input text
    Argument(IUnknown* object);  // an input object
    Argument(int* out);          // where to store a number
    Argument(void** out);        // where to store an object

    VARIANT value{};
};

class TypedObject {
public:
    /// Takes over one reference to `object`, which must be of the interface `type`.
    TypedObject(Type type, void* object) : type_(std::move(type)), object_(static_cast<IUnknown*>(object)) {}

    /// Calls a method by its slot in the type library, and throws std::runtime_error when it fails.
    void Call(const std::string& method, std::initializer_list<Argument> arguments) const;

    /// The same object through another interface.
    TypedObject As(Type type) const;

    IUnknown* Get() const { return object_.get(); }
    const Type& GetType() const { return type_; }

private:
    Type type_;
    Owned<IUnknown> object_;
};
