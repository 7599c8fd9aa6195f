// Windows only: what LoadTypeLib finds in the module.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "MorquilAPI.h"
#include "tests/system/api/expected_contract.h"
#include "tests/system/api/guid_text.h"
#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {
namespace {

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};
using TypeLibrary = std::unique_ptr<ITypeLib, ReleaseObject>;
using Type = std::unique_ptr<ITypeInfo, ReleaseObject>;

std::string TakeText(BSTR text) {
    std::string narrow;
    for (UINT i = 0; i < SysStringLen(text); ++i) {
        narrow.push_back(static_cast<char>(text[i]));
    }
    SysFreeString(text);
    return narrow;
}

TypeLibrary Load() {
    std::wstring path;
    for (const char letter : std::string(LibraryPath())) {
        path.push_back(static_cast<wchar_t>(letter));
    }
    ITypeLib* library = nullptr;
    EXPECT_EQ(LoadTypeLib(path.c_str(), &library), S_OK) << LibraryPath();
    return TypeLibrary(library);
}

Type TypeAt(ITypeLib& library, UINT index) {
    ITypeInfo* type = nullptr;
    EXPECT_EQ(library.GetTypeInfo(index, &type), S_OK);
    return Type(type);
}

// The type called `name`, or null.
Type Find(ITypeLib& library, const std::string& name, std::string* help = nullptr) {
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        BSTR found = nullptr;
        BSTR documentation = nullptr;
        library.GetDocumentation(static_cast<INT>(i), &found, &documentation, nullptr, nullptr);
        const std::string helpText = TakeText(documentation);
        if (TakeText(found) != name) {
            continue;
        }
        if (help != nullptr) {
            *help = helpText;
        }
        return TypeAt(library, i);
    }
    ADD_FAILURE() << "no type " << name;
    return nullptr;
}

// Calls `use` with the attributes of `type`.
template <class Use>
void WithAttributes(ITypeInfo& type, Use use) {
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(type.GetTypeAttr(&attributes), S_OK);
    use(*attributes);
    type.ReleaseTypeAttr(attributes);
}

std::string MemberName(ITypeInfo& type, MEMBERID member) {
    BSTR name = nullptr;
    type.GetDocumentation(member, &name, nullptr, nullptr, nullptr);
    return TakeText(name);
}

std::string TypeText(ITypeInfo& type, const TYPEDESC& description) {
    switch (description.vt) {
        case VT_PTR:
            return TypeText(type, *description.lptdesc) + "*";
        case VT_USERDEFINED: {
            ITypeInfo* referred = nullptr;
            if (type.GetRefTypeInfo(description.hreftype, &referred) != S_OK) {
                return "unresolved";
            }
            return MemberName(*Type(referred), MEMBERID_NIL);
        }
        case VT_I4:
            return "LONG";
        case VT_INT:
            return "int";
        case VT_UINT:
            return "unsigned int";
        case VT_R8:
            return "double";
        case VT_BSTR:
            return "BSTR";
        default:
            return "type " + std::to_string(description.vt);
    }
}

std::string ParametersText(ITypeInfo& type, const FUNCDESC& function) {
    std::string text = "(";
    for (SHORT i = 0; i < function.cParams; ++i) {
        text += (i == 0 ? "" : ", ") + TypeText(type, function.lprgelemdescParam[i].tdesc);
    }
    return text + ")";
}

void ExpectMethod(ITypeInfo& type, UINT index, const ExpectedMethod& expected) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(type.GetFuncDesc(index, &function), S_OK) << expected.name;
    EXPECT_EQ(MemberName(type, function->memid), expected.name);
    EXPECT_EQ(ParametersText(type, *function), expected.parameters) << expected.name;
    EXPECT_EQ(function->oVft, static_cast<SHORT>((3 + index) * sizeof(void*))) << expected.name;
    EXPECT_EQ(function->callconv, CC_STDCALL) << expected.name;
    EXPECT_EQ(function->elemdescFunc.tdesc.vt, VT_HRESULT) << expected.name;
    EXPECT_EQ(function->funckind, FUNC_PUREVIRTUAL) << expected.name;
    type.ReleaseFuncDesc(function);
}

void ExpectInterface(ITypeLib& library, const ExpectedInterface& expected) {
    SCOPED_TRACE(expected.name);
    std::string help;
    const Type type = Find(library, expected.name, &help);
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(help, expected.help);
    WithAttributes(*type, [&](const TYPEATTR& attributes) {
        EXPECT_EQ(attributes.typekind, TKIND_INTERFACE);
        EXPECT_EQ(GuidText(attributes.guid), expected.iid);
        EXPECT_EQ(attributes.wTypeFlags & (TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE), 0);
        EXPECT_EQ(attributes.cFuncs, expected.methods.size());
    });
    for (UINT i = 0; i < expected.methods.size(); ++i) {
        ExpectMethod(*type, i, expected.methods[i]);
    }

    HREFTYPE base = 0;
    ITypeInfo* baseType = nullptr;
    ASSERT_EQ(type->GetRefTypeOfImplType(0, &base), S_OK);
    ASSERT_EQ(type->GetRefTypeInfo(base, &baseType), S_OK);
    EXPECT_EQ(MemberName(*Type(baseType), MEMBERID_NIL), "IUnknown");
}

void ExpectEnumeration(ITypeLib& library, const ExpectedEnumeration& expected) {
    SCOPED_TRACE(expected.name);
    const Type type = Find(library, expected.name);
    ASSERT_NE(type, nullptr);
    WithAttributes(*type, [&](const TYPEATTR& attributes) {
        EXPECT_EQ(attributes.typekind, TKIND_ENUM);
        ASSERT_EQ(attributes.cVars, expected.constants.size());
    });
    for (UINT i = 0; i < expected.constants.size(); ++i) {
        VARDESC* constant = nullptr;
        ASSERT_EQ(type->GetVarDesc(i, &constant), S_OK);
        EXPECT_EQ(MemberName(*type, constant->memid), expected.constants[i].name);
        EXPECT_EQ(V_I4(constant->lpvarValue), expected.constants[i].value) << expected.constants[i].name;
        type->ReleaseVarDesc(constant);
    }
}

TEST(TypeLibrary, IsResourceNumberOneOfTheModuleInItsLanguage) {
    const LoadedLibrary module;
    constexpr WORD english = 1033;

    EXPECT_NE(FindResourceExA(static_cast<HMODULE>(module.Get()), "TYPELIB", MAKEINTRESOURCEA(1), english), nullptr);
}

TEST(TypeLibrary, HasItsIdentityVersionLocaleAndSystem) {
    const TypeLibrary library = Load();
    ASSERT_NE(library, nullptr);
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);

    EXPECT_EQ(GuidText(attributes->guid), "{5FF6856C-F8DA-41D9-B457-E6889D512B6B}");
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 1);
    EXPECT_EQ(attributes->lcid, 0U);
    EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
    BSTR name = nullptr;
    ASSERT_EQ(library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(TakeText(name), "MorquilAPI");
}

TEST(TypeLibrary, HoldsTheInterfacesEnumerationsAndTheClassAndNothingElse) {
    const TypeLibrary library = Load();
    ASSERT_NE(library, nullptr);

    EXPECT_EQ(library->GetTypeInfoCount(), ExpectedInterfaces().size() + ExpectedEnumerations().size() + 1);
}

TEST(TypeLibrary, ListsEveryInterfaceWithItsMethodsInTheirSlots) {
    const TypeLibrary library = Load();
    ASSERT_NE(library, nullptr);
    for (const ExpectedInterface& expected : ExpectedInterfaces()) {
        ExpectInterface(*library, expected);
    }
}

TEST(TypeLibrary, ListsEveryEnumerationWithItsValues) {
    const TypeLibrary library = Load();
    ASSERT_NE(library, nullptr);
    for (const ExpectedEnumeration& expected : ExpectedEnumerations()) {
        ExpectEnumeration(*library, expected);
    }
}

TEST(TypeLibrary, ListsTheClassWithItsDefaultInterface) {
    const TypeLibrary library = Load();
    ASSERT_NE(library, nullptr);
    std::string help;
    const Type type = Find(*library, "CMorquilDiscovery", &help);
    ASSERT_NE(type, nullptr);

    EXPECT_EQ(help, "CMorquilDiscovery Class");
    WithAttributes(*type, [](const TYPEATTR& attributes) {
        EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
        EXPECT_EQ(GuidText(attributes.guid), "{1E7BE91D-FAC6-4CDE-B52E-68844DF364F6}");
        EXPECT_NE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE, 0);
        EXPECT_EQ(attributes.cImplTypes, 1);
    });
    INT flags = 0;
    HREFTYPE reference = 0;
    ITypeInfo* served = nullptr;
    ASSERT_EQ(type->GetImplTypeFlags(0, &flags), S_OK);
    ASSERT_EQ(type->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(type->GetRefTypeInfo(reference, &served), S_OK);
    EXPECT_EQ(flags & IMPLTYPEFLAG_FDEFAULT, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_EQ(MemberName(*Type(served), MEMBERID_NIL), "IMorquilDiscovery");
}

}  // namespace
}  // namespace Morquil::Testing
