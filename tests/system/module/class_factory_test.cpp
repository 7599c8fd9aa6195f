#include "module/class_factory.h"

#include <gtest/gtest.h>

#include "MorquilEntry.h"

namespace Morquil::Testing {
namespace {

// A factory for `clsid`, released at the end of the test.
class OwnedFactory {
public:
    explicit OwnedFactory(REFCLSID clsid = CLSID_CMorquilDiscovery) : factory_(new CMorquilFactory(clsid)) {}
    OwnedFactory(const OwnedFactory&) = delete;
    OwnedFactory& operator=(const OwnedFactory&) = delete;
    ~OwnedFactory() { factory_->Release(); }
    CMorquilFactory* operator->() const { return factory_; }
    CMorquilFactory* Get() const { return factory_; }

private:
    CMorquilFactory* factory_;
};

TEST(ClassFactory, AnswersUnknownAndClassFactoryWithOneMoreReference) {
    const OwnedFactory factory;
    for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
        void* object = nullptr;
        EXPECT_EQ(factory->QueryInterface(iid, &object), S_OK);
        EXPECT_EQ(object, static_cast<IClassFactory*>(factory.Get()));
        EXPECT_EQ(factory->Release(), 1U);
    }
}

TEST(ClassFactory, NullsTheOutPointerForOtherInterfaces) {
    const OwnedFactory factory;
    void* object = &object;

    EXPECT_EQ(factory->QueryInterface(IID_IMorquilDiscovery, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactory, CountsItsReferences) {
    const OwnedFactory factory;

    EXPECT_EQ(factory->AddRef(), 2U);
    EXPECT_EQ(factory->AddRef(), 3U);
    EXPECT_EQ(factory->Release(), 2U);
    EXPECT_EQ(factory->Release(), 1U);
}

TEST(ClassFactory, LocksTheModuleWhileItLives) {
    const LONG before = ModuleLockCount();
    {
        const OwnedFactory first;
        const OwnedFactory second;
        EXPECT_EQ(ModuleLockCount(), before + 2);
        first->AddRef();
        EXPECT_EQ(ModuleLockCount(), before + 2);
        first->Release();
    }
    EXPECT_EQ(ModuleLockCount(), before);
}

TEST(ClassFactory, ReturnsTheDiscoveryObjectWhateverInterfaceIsAskedFor) {
    const OwnedFactory factory;
    IMorquilDiscovery* const singleton = GetMorquilDiscoveryInstance_0000();
    for (const IID& iid : {IID_IMorquilDiscovery, IID_IUnknown, IID_IMorquilAlign}) {
        void* object = nullptr;
        EXPECT_EQ(factory->CreateInstance(nullptr, iid, &object), S_OK);
        EXPECT_EQ(object, singleton);
        EXPECT_EQ(singleton->Release(), 1U);
    }
    EXPECT_EQ(singleton->Release(), 0U);
}

TEST(ClassFactory, RefusesAnOuterObject) {
    const OwnedFactory factory;
    void* object = nullptr;

    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, RefusesANullOutPointer) {
    const OwnedFactory factory;

    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactory, MadeForAnotherClassCreatesNothing) {
    const OwnedFactory factory(IID_IMorquilDevice);
    void* object = nullptr;

    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, DoesNotLockTheServer) {
    const OwnedFactory factory;
    const LONG before = ModuleLockCount();

    EXPECT_EQ(factory->LockServer(TRUE), E_NOTIMPL);
    EXPECT_EQ(factory->LockServer(FALSE), E_NOTIMPL);
    EXPECT_EQ(ModuleLockCount(), before);
}

}  // namespace
}  // namespace Morquil::Testing
