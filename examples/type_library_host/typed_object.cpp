#include "typed_object.h"

#include <oleauto.h>

#include <cstdio>
#include <stdexcept>
#include <vector>

Argument::Argument(int number) {
    value.vt = VT_I4;
    value.lVal = number;
}
Argument::Argument(BSTR text) {
    value.vt = VT_BSTR;
    value.bstrVal = text;
}
Argument::Argument(IUnknown* object) {
    value.vt = VT_UNKNOWN;
    value.punkVal = object;
}
Argument::Argument(int* out) {
    value.vt = VT_BYREF | VT_I4;
    value.byref = out;
}
Argument::Argument(void** out) {
    value.vt = VT_BYREF | VT_UNKNOWN;
    value.byref = out;
}

void TypedObject::Call(const std::string& method, std::initializer_list<Argument> arguments) const {
    const Method found = type_.MethodNamed(method);
    if (found.argumentCount != arguments.size()) {
        throw std::runtime_error(method + " takes " + std::to_string(found.argumentCount) + " arguments");
    }
    std::vector<VARTYPE> kinds;
    std::vector<VARIANTARG> values;
    for (const Argument& argument : arguments) {
        kinds.push_back(argument.value.vt);
        values.push_back(argument.value);
    }
    std::vector<VARIANTARG*> places;
    for (VARIANTARG& value : values) {
        places.push_back(&value);
    }
    VARIANT result{};
    const HRESULT called = DispCallFunc(object_.get(), found.offset, CC_STDCALL, VT_ERROR, found.argumentCount,
                                        kinds.data(), places.data(), &result);
    if (FAILED(called) || FAILED(result.scode)) {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08lx", static_cast<unsigned long>(FAILED(called) ? called : result.scode));
        throw std::runtime_error(method + ": " + code);
    }
}

TypedObject TypedObject::As(Type type) const {
    void* other = nullptr;
    if (FAILED(object_->QueryInterface(type.Identifier(), &other))) {
        throw std::runtime_error("the object has no such interface");
    }
    return TypedObject(std::move(type), other);
}
