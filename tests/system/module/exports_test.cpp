// The built library as seen by a host that knows only names, identifiers and slots.
#include <gtest/gtest.h>

#include "MorquilEntry.h"
#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {
namespace {

class Exports : public testing::Test {
protected:
    HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** object) const {
        return library.Find<decltype(DllGetClassObject)>("DllGetClassObject")(clsid, iid, object);
    }
    HRESULT CanUnloadNow() const { return library.Find<decltype(DllCanUnloadNow)>("DllCanUnloadNow")(); }
    IMorquilDiscovery* Discovery() const {
        return library.Find<decltype(GetMorquilDiscoveryInstance_0000)>("GetMorquilDiscoveryInstance_0000")();
    }

    LoadedLibrary library;
};

TEST_F(Exports, AreTheNamesThatHostsCallAndNoOthers) {
    EXPECT_EQ(library.ExportedNames(), ExpectedExports());
}

TEST_F(Exports, RefuseAnyOtherClassAndLeaveTheOutPointer) {
    void* object = &object;

    EXPECT_EQ(GetClassObject(IID_IMorquilDiscovery, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, &object);
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

TEST_F(Exports, LeaveTheOutPointerWhenTheFactoryHasNoSuchInterface) {
    void* object = &object;

    EXPECT_EQ(GetClassObject(CLSID_CMorquilDiscovery, IID_IMorquilDiscovery, &object), E_NOINTERFACE);
    EXPECT_EQ(object, &object);
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

TEST_F(Exports, RefuseANullOutPointer) {
    EXPECT_EQ(GetClassObject(CLSID_CMorquilDiscovery, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

TEST_F(Exports, KeepTheModuleLoadedForAFactoryOnly) {
    IClassFactory* factory = nullptr;
    ASSERT_EQ(GetClassObject(CLSID_CMorquilDiscovery, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
    EXPECT_EQ(CanUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(TRUE), E_NOTIMPL);
    IMorquilDiscovery* discovery = nullptr;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IMorquilDiscovery, reinterpret_cast<void**>(&discovery)), S_OK);

    EXPECT_EQ(factory->Release(), 0U);
    EXPECT_EQ(CanUnloadNow(), S_OK);
    EXPECT_EQ(discovery->Release(), 0U);
}

TEST_F(Exports, ReturnOneDiscoveryObjectToEveryCaller) {
    IMorquilDiscovery* const first = Discovery();
    IMorquilDiscovery* const second = Discovery();

    EXPECT_EQ(first, second);
    EXPECT_EQ(second->Release(), 1U);
    EXPECT_EQ(first->Release(), 0U);
}

}  // namespace
}  // namespace Morquil::Testing
