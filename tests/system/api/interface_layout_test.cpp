// What a host that was compiled elsewhere relies on: slots, parameters, identifiers and numbers.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <type_traits>

#include "MorquilAPI.h"
#include "tests/system/api/expected_contract.h"
#include "tests/system/api/guid_text.h"

namespace Morquil::Testing {
namespace {

static_assert(sizeof(HRESULT) == 4 && sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(GUID) == 16);
static_assert(!std::has_virtual_destructor_v<IUnknown>);
static_assert(!std::has_virtual_destructor_v<IClassFactory>);

// No data, no destructor, one base.
#define INTERFACE(name, iid, help)                       \
    static_assert(sizeof(name) == sizeof(void*));        \
    static_assert(!std::has_virtual_destructor_v<name>); \
    static_assert(std::is_base_of_v<IUnknown, name> && std::is_abstract_v<name>);
// NOLINTBEGIN(bugprone-macro-parentheses): the parameters are a list with its own
#define METHOD(interfaceName, name, parameters) \
    static_assert(                              \
        std::is_same_v<decltype(&interfaceName::name), HRESULT(STDMETHODCALLTYPE interfaceName::*) parameters>);
// NOLINTEND(bugprone-macro-parentheses)
#include "tests/system/api/expected_interfaces.inc"
#undef INTERFACE
#undef METHOD

// Enumerations travel as 32-bit signed numbers.
#define ENUMERATION(name) static_assert(std::is_same_v<std::underlying_type_t<name>, int> && sizeof(name) == 4);
#define CONSTANT(enumeration, name, value) \
    static_assert(static_cast<int>(name) == (value) && std::is_same_v<decltype(name), enumeration>);
#include "tests/system/api/expected_enumerations.inc"
#undef ENUMERATION
#undef CONSTANT

// A pointer to a virtual member function begins with the offset of its slot in all compilers that build this library;
// some mark it by an odd number.
template <class Method>
std::size_t SlotOf(Method method) {
    std::size_t pointer = 0;
    static_assert(sizeof method >= sizeof pointer);
    std::memcpy(&pointer, &method, sizeof pointer);
    return pointer / sizeof(void*);
}

TEST(InterfaceLayout, KeepsEveryMethodInItsSlot) {
    std::map<std::string, std::size_t> nextSlot;
#define INTERFACE(name, iid, help) nextSlot[#name] = 3;
#define METHOD(interfaceName, name, parameters) \
    EXPECT_EQ(SlotOf(&interfaceName::name), nextSlot[#interfaceName]++) << #interfaceName "::" #name;
#include "tests/system/api/expected_interfaces.inc"
#undef INTERFACE
#undef METHOD
}

TEST(InterfaceLayout, KeepsTheMethodsOfUnknownAndOfTheClassFactoryInTheirSlots) {
    using QueryInterface = HRESULT (STDMETHODCALLTYPE IUnknown::*)(REFIID, void**);
    EXPECT_EQ(SlotOf<QueryInterface>(&IUnknown::QueryInterface), 0U);
    EXPECT_EQ(SlotOf(&IUnknown::AddRef), 1U);
    EXPECT_EQ(SlotOf(&IUnknown::Release), 2U);
    EXPECT_EQ(SlotOf(&IClassFactory::CreateInstance), 3U);
    EXPECT_EQ(SlotOf(&IClassFactory::LockServer), 4U);
}

TEST(InterfaceLayout, IdentifiesEveryInterface) {
#define INTERFACE(name, iid, help) EXPECT_EQ(GuidText(IID_##name), iid) << #name;
#define METHOD(interfaceName, name, parameters)
#include "tests/system/api/expected_interfaces.inc"
#undef INTERFACE
#undef METHOD
}

TEST(InterfaceLayout, IdentifiesTheLibraryAndTheClassToCom) {
    EXPECT_EQ(GuidText(IID_IUnknown), "{00000000-0000-0000-C000-000000000046}");
    EXPECT_EQ(GuidText(IID_IClassFactory), "{00000001-0000-0000-C000-000000000046}");
    EXPECT_EQ(GuidText(LIBID_MorquilAPI), "{5FF6856C-F8DA-41D9-B457-E6889D512B6B}");
    EXPECT_EQ(GuidText(CLSID_CMorquilDiscovery), "{1E7BE91D-FAC6-4CDE-B52E-68844DF364F6}");
}

TEST(InterfaceLayout, HasTwentyFiveInterfacesAndThirtySevenEnumerations) {
    EXPECT_EQ(ExpectedInterfaces().size(), 25U);
    EXPECT_EQ(ExpectedEnumerations().size(), 37U);
}

TEST(Results, AreTheNumbersThatHostsKnow) {
    EXPECT_EQ(static_cast<ULONG>(S_OK), 0U);
    EXPECT_EQ(static_cast<ULONG>(S_FALSE), 1U);
    EXPECT_EQ(static_cast<ULONG>(E_NOTIMPL), 0x80004001U);
    EXPECT_EQ(static_cast<ULONG>(E_NOINTERFACE), 0x80004002U);
    EXPECT_EQ(static_cast<ULONG>(E_POINTER), 0x80004003U);
    EXPECT_EQ(static_cast<ULONG>(E_FAIL), 0x80004005U);
    EXPECT_EQ(static_cast<ULONG>(E_UNEXPECTED), 0x8000FFFFU);
    EXPECT_EQ(static_cast<ULONG>(E_ACCESSDENIED), 0x80070005U);
    EXPECT_EQ(static_cast<ULONG>(E_OUTOFMEMORY), 0x8007000EU);
    EXPECT_EQ(static_cast<ULONG>(E_INVALIDARG), 0x80070057U);
    EXPECT_EQ(static_cast<ULONG>(CLASS_E_NOAGGREGATION), 0x80040110U);
    EXPECT_EQ(static_cast<ULONG>(CLASS_E_CLASSNOTAVAILABLE), 0x80040111U);
}

TEST(Results, AreSuccessesUnlessNegative) {
    EXPECT_TRUE(SUCCEEDED(S_OK) && SUCCEEDED(S_FALSE) && SUCCEEDED(2));
    EXPECT_TRUE(FAILED(E_FAIL) && FAILED(E_POINTER));
}

TEST(Guids, AreEqualOnlyWhenEveryByteIs) {
    GUID other = IID_IMorquilDevice;
    EXPECT_TRUE(other == IID_IMorquilDevice);
    other.Data4[7] ^= 1;
    EXPECT_FALSE(other == IID_IMorquilDevice);
    EXPECT_TRUE(other != IID_IMorquilDevice);
}

}  // namespace
}  // namespace Morquil::Testing
