#include "tests/system/api/c_host.h"

#include <gtest/gtest.h>

namespace Morquil::Testing {
namespace {

class RecordingObserver final : public IMorquilPropertyObserver {
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        asked = iid;
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override {
        notifiedId = id;
        return S_FALSE;
    }

    GUID asked = {};
    int notifiedId = 0;
};

TEST(CHost, CallsAnObserverThatIsWrittenInCpp) {
    RecordingObserver observer;

    EXPECT_EQ(CHostNotify(&observer, morquil3dModePropertySetId), S_FALSE);
    EXPECT_EQ(observer.notifiedId, 0x33646D6F);
}

TEST(CHost, PassesIdentifiersByAddress) {
    RecordingObserver observer;
    IMorquilDevice* device = nullptr;

    EXPECT_EQ(CHostAskForDevice(&observer, &device), E_NOINTERFACE);
    EXPECT_TRUE(observer.asked == IID_IMorquilDevice);
}

TEST(CHost, AllocatesText) {
    EXPECT_EQ(CHostTextLength(), 4U);
}

}  // namespace
}  // namespace Morquil::Testing
