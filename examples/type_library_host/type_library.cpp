#include "type_library.h"

#include <stdexcept>

namespace {

/// Converts a text and frees it; names in type libraries are ASCII.
std::string TakeText(BSTR text) {
    std::string ascii;
    for (UINT i = 0; i < SysStringLen(text); ++i) {
        ascii += static_cast<char>(text[i]);
    }
    SysFreeString(text);
    return ascii;
}

/// Descriptions that ITypeInfo returns must be released through it.
template <class Description, class Get, class Release>
auto Borrow(ITypeInfo* type, Get get, Release release) {
    Description* description = nullptr;
    if (FAILED(get(&description))) {
        throw std::runtime_error("the type library cannot be read");
    }
    auto deleter = [type, release](Description* borrowed) { (type->*release)(borrowed); };
    return std::unique_ptr<Description, decltype(deleter)>(description, deleter);
}

auto AttributesOf(ITypeInfo* type) {
    return Borrow<TYPEATTR>(
        type, [=](TYPEATTR** out) { return type->GetTypeAttr(out); }, &ITypeInfo::ReleaseTypeAttr);
}
auto FunctionOf(ITypeInfo* type, unsigned index) {
    return Borrow<FUNCDESC>(
        type, [=](FUNCDESC** out) { return type->GetFuncDesc(index, out); }, &ITypeInfo::ReleaseFuncDesc);
}
auto VariableOf(ITypeInfo* type, unsigned index) {
    return Borrow<VARDESC>(
        type, [=](VARDESC** out) { return type->GetVarDesc(index, out); }, &ITypeInfo::ReleaseVarDesc);
}

}  // namespace

GUID Type::Identifier() const {
    return AttributesOf(information_.get())->guid;
}

std::string Type::NameOfMember(MEMBERID member) const {
    BSTR name = nullptr;
    information_->GetDocumentation(member, &name, nullptr, nullptr, nullptr);
    return TakeText(name);
}

Method Type::MethodNamed(const std::string& name) const {
    const unsigned count = AttributesOf(information_.get())->cFuncs;
    for (unsigned i = 0; i < count; ++i) {
        const auto function = FunctionOf(information_.get(), i);
        if (NameOfMember(function->memid) == name) {
            return {static_cast<unsigned>(function->oVft), static_cast<unsigned>(function->cParams)};
        }
    }
    throw std::runtime_error("no method " + name);
}

std::string Type::NameOfValue(long value) const {
    const unsigned count = AttributesOf(information_.get())->cVars;
    for (unsigned i = 0; i < count; ++i) {
        const auto variable = VariableOf(information_.get(), i);
        if (variable->lpvarValue->lVal == value) {
            return NameOfMember(variable->memid);
        }
    }
    throw std::runtime_error("no name for " + std::to_string(value));
}

TypeLibrary::TypeLibrary(const std::string& file) {
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(std::wstring(file.begin(), file.end()).c_str(), REGKIND_NONE, &library))) {
        throw std::runtime_error("no type library in " + file);
    }
    library_.reset(library);
}

Type TypeLibrary::Find(const std::string& name) const {
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
        BSTR found = nullptr;
        library_->GetDocumentation(static_cast<INT>(i), &found, nullptr, nullptr, nullptr);
        ITypeInfo* information = nullptr;
        if (TakeText(found) == name && SUCCEEDED(library_->GetTypeInfo(i, &information))) {
            return Type(Owned<ITypeInfo>(information));
        }
    }
    throw std::runtime_error("no type " + name);
}

int TypeLibrary::Count(TYPEKIND kind) const {
    int count = 0;
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
        TYPEKIND found{};
        library_->GetTypeInfoType(i, &found);
        count += found == kind ? 1 : 0;
    }
    return count;
}

std::string TypeLibrary::NameAndVersion() const {
    BSTR name = nullptr;
    library_->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    TLIBATTR* attributes = nullptr;
    if (FAILED(library_->GetLibAttr(&attributes))) {
        throw std::runtime_error("the type library cannot be read");
    }
    const std::string version =
        std::to_string(attributes->wMajorVerNum) + "." + std::to_string(attributes->wMinorVerNum);
    library_->ReleaseTLibAttr(attributes);
    return TakeText(name) + " " + version;
}
