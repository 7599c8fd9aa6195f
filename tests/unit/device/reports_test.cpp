// What observers of reports are notified of, and how long a device has been silent.
#include <gtest/gtest.h>

#include <string>

#include "device/device.h"
#include "tests/unit/device/delivery_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

class Reports : public DeliveryTest {
protected:
    void ConnectAndObserve() {
        Connect();
        ASSERT_EQ(Delivery()->AddReportObserver(reports.Get()), S_OK);
    }

    Held<ReportObserver> reports;
};

TEST_F(Reports, SayOfEachBlockWhereItsChangeWasMade) {
    ConnectAndObserve();
    SetGain(5);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 6\n\n");
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 6\n\n");
    EXPECT_EQ(reports->Notifications(), (Texts{"vpap settings, echo", "vpap settings", "vpap settings"}));
}

TEST_F(Reports, ComeOnceForEachSetThatSharesABlock) {
    ConnectAndObserve();
    rig.DeviceSends("VIDEO ADJUST:\nRed: 5\n\n");
    EXPECT_EQ(reports->Notifications(), (Texts{"coco settings", "vidc settings", "aspf settings"}));
}

TEST_F(Reports, IncludeAvailability) {
    ConnectAndObserve();
    rig.DeviceSends("VIDEO PROC AMP AVAILABILITY:\nGain range: -60 60\n\n");
    rig.DeviceSends("SUPPORTED CONVERSIONS:\n\n");
    EXPECT_EQ(reports->Notifications(), (Texts{"vpap availability", "devc availability"}));
}

TEST_F(Reports, IncludeTheDeviceItself) {
    ConnectAndObserve();
    rig.DeviceSends("MORQUIL DEVICE:\nPanel lock: true\n\n");
    EXPECT_EQ(reports->Notifications(), Texts{"devc settings"});
}

TEST_F(Reports, DistinguishTheEchoOfTheOutput) {
    ConnectAndObserve();
    IMorquilOutputConfiguration* const output =
        rig.Feature<IMorquilOutputConfiguration>(IID_IMorquilOutputConfiguration);
    ASSERT_EQ(output->SetTransitionSetting(20), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.DeviceSends("VIDEO OUTPUT:\nTransition setting: 30\n\n");
    EXPECT_EQ(reports->Notifications(), (Texts{"ouco settings, echo", "ouco settings"}));
}

TEST_F(Reports, ComeAfterThePropertyObservers) {
    ConnectAndObserve();
    const Held<PropertyObserver> property;
    std::vector<std::string> order;
    reports->sharedNotes = property->sharedNotes = &order;
    reports->name = "report";
    property->name = "change";
    reports->onCall = [&] { EXPECT_EQ(rig.Gain(), 6); };
    rig.device->AddPropertyObserver(property.Get(), morquilVideoProcAmpPropertySetId);
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 6\n\n");
    EXPECT_EQ(order, (Texts{"change vpap", "report vpap settings"}));
}

TEST_F(Reports, EndWithADisconnectInTheCallback) {
    ConnectAndObserve();
    const Held<ReportObserver> second;
    Delivery()->AddReportObserver(second.Get());
    reports->onCall = [&] { EXPECT_EQ(rig.device->Disconnect(), S_OK); };
    rig.link.Push("VIDEO ADJUST:\nRed: 5\n\n");
    ASSERT_TRUE(rig.link.AwaitClosed());
    EXPECT_EQ(reports->Notifications(), Texts{"coco settings"});
    EXPECT_TRUE(second->Notifications().empty());
}

TEST_F(Reports, AreForObserversThatAreRegistered) {
    EXPECT_EQ(Delivery()->AddReportObserver(nullptr), E_POINTER);
    EXPECT_EQ(Delivery()->RemoveReportObserver(reports.Get()), S_FALSE);
    ConnectAndObserve();
    EXPECT_EQ(Delivery()->AddReportObserver(reports.Get()), S_FALSE);
    EXPECT_EQ(Delivery()->RemoveReportObserver(reports.Get()), S_OK);
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 6\n\n");
    EXPECT_TRUE(reports->Notifications().empty());
    EXPECT_EQ(reports->References(), 1U);
}

TEST_F(Reports, ShareTheReferencesOfTheDevice) {
    void* out = nullptr;
    ASSERT_EQ(rig.device->QueryInterface(IID_IMorquilDelivery, &out), S_OK);
    auto* const delivery = static_cast<IMorquilDelivery*>(out);
    void* device = nullptr;
    ASSERT_EQ(delivery->QueryInterface(IID_IMorquilDevice, &device), S_OK);
    EXPECT_EQ(device, static_cast<IMorquilDevice*>(rig.device));
    EXPECT_EQ(delivery->Release(), 2U);
    EXPECT_EQ(delivery->Release(), 1U);
}

TEST_F(Reports, SilenceIsKnownWhileTheDeviceIsConnected) {
    UINT silence = 7;
    EXPECT_EQ(Delivery()->GetSilence(nullptr), E_POINTER);
    EXPECT_EQ(Delivery()->GetSilence(&silence), E_FAIL);
    EXPECT_EQ(silence, 7U);
    Connect();
    EXPECT_EQ(Delivery()->GetSilence(&silence), S_OK);
    EXPECT_LT(silence, 60'000U);
    rig.device->Disconnect();
    EXPECT_EQ(Delivery()->GetSilence(&silence), E_FAIL);
}

}  // namespace
}  // namespace Morquil
