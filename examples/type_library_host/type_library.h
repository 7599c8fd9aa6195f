// What a type library describes: identifiers, slots and arguments of methods, names of enumerated values.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string>

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Owned = std::unique_ptr<Interface, ReleaseObject>;

/// The position of a method in its interface's table, and how many arguments it takes.
struct Method {
    unsigned offset = 0;  // in bytes
    unsigned argumentCount = 0;

    unsigned Slot() const { return offset / static_cast<unsigned>(sizeof(void*)); }
};

/// An interface, a class or an enumeration. Asking for a name or value that it does not have throws std::runtime_error.
class Type {
public:
    explicit Type(Owned<ITypeInfo> information) : information_(std::move(information)) {}

    GUID Identifier() const;
    Method MethodNamed(const std::string& name) const;
    std::string NameOfValue(long value) const;

private:
    std::string NameOfMember(MEMBERID member) const;

    Owned<ITypeInfo> information_;
};

/// The types of a library, from a file that holds a type library: MorquilAPI.tlb or MorquilAPI.dll.
class TypeLibrary {
public:
    explicit TypeLibrary(const std::string& file);

    Type Find(const std::string& name) const;
    /// The number of types of a kind: TKIND_ENUM, TKIND_INTERFACE, TKIND_COCLASS.
    int Count(TYPEKIND kind) const;
    /// Its name and version, such as "MorquilAPI 1.1".
    std::string NameAndVersion() const;

private:
    Owned<ITypeLib> library_;
};
