// A host whose memory runs out while it follows its changes, the device's reports and the library's text.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/unit/device/device_texts.h"
#include "tests/worlds/allocation/scarce_host.h"
#include "transport/console.h"

namespace Morquil::Testing {
namespace {

bool Contains(const std::vector<std::string>& notifications, const std::string& text) {
    return std::any_of(notifications.begin(), notifications.end(),
                       [&](const std::string& notification) { return notification.find(text) != std::string::npos; });
}

}  // namespace

IMorquilDelivery* ScarceHost::Delivery() const {
    return Feature<IMorquilDelivery>(IID_IMorquilDelivery);
}

/// The connection may have ended for lack of memory.
void ScarceHost::OpenReceipt() {
    IMorquilDelivery* const delivery = Delivery();
    const HRESULT result = InTheLibrary(
        [&] { return delivery->OpenReceipt(receiptObserver_.Get(), morquilReceiptThisThread, &receipt_); });
    ExpectStated(result, S_OK, {E_OUTOFMEMORY, E_FAIL});
    EXPECT_EQ(receipt_ != 0, result == S_OK);
}

void ScarceHost::QueueForReceipt(const std::function<HRESULT()>& setter) {
    const HRESULT result = InTheLibrary(setter);
    ExpectStated(result, S_OK, {E_OUTOFMEMORY});
    queued_ += result == S_OK ? 1 : 0;
}

void ScarceHost::MarkReceipt() {
    IMorquilDelivery* const delivery = Delivery();
    const HRESULT result = InTheLibrary([&] { return delivery->MarkReceipt(receipt_); });
    ExpectStated(result, S_OK, {S_FALSE});
    if (result == S_FALSE && receipt_ != 0) {
        EXPECT_TRUE(receiptObserver_->AwaitReferences(1)) << "the notification of the loss may still be in progress";
        EXPECT_TRUE(Contains(receiptObserver_->Notifications(), "lost"));
    }
}

void ScarceHost::CancelReceipt() {
    IMorquilDelivery* const delivery = Delivery();
    ExpectStated(InTheLibrary([&] { return delivery->CancelReceipt(receipt_); }), S_OK, {S_FALSE});
    EXPECT_TRUE(receiptObserver_->AwaitReferences(1));
}

void ScarceHost::AwaitReceipt() {
    if (receipt_ == 0) {
        return;
    }
    const auto isOver = [&] {
        const std::vector<std::string> notifications = receiptObserver_->Notifications();
        return Contains(notifications, "settled") || Contains(notifications, "lost");
    };
    EXPECT_TRUE(receiptObserver_->AwaitReferences(1)) << "a receipt that stays silent";
    EXPECT_TRUE(isOver());
    const std::vector<std::string> notifications = receiptObserver_->Notifications();
    if (Contains(notifications, "settled")) {
        const std::string count = std::to_string(queued_);
        EXPECT_EQ(notifications, (std::vector<std::string>{"answered " + count + " 0 0", "settled " + count + " 0"}));
    }
}

void ScarceHost::LeaveTextWaiting() {
    link.AnswerWith([](const std::string& /*sent*/) { return std::string(); });
    EXPECT_EQ(Feature<IMorquilReference>(IID_IMorquilReference)->SetLineOffset(1), S_OK);
    EXPECT_TRUE(link.AwaitIdle());
    EXPECT_EQ(Feature<IMorquilNetworkConfig>(IID_IMorquilNetworkConfig)->SetFriendlyName(longText.Get()), S_OK);
}

void ScarceHost::AnswerLate() {
    link.AnswerWith(DeviceAnswer);
    link.Push("ACK\n\nGENLOCK:\nLine offset: 1\n\n");
}

void ScarceHost::FollowReports() {
    IMorquilDelivery* const delivery = Delivery();
    const HRESULT result = InTheLibrary([&] { return delivery->AddReportObserver(reportObserver_.Get()); });
    ExpectStated(result, S_OK, {E_OUTOFMEMORY});
    link.Push("VIDEO PROC AMP:\nGain: 5\n\nVIDEO ADJUST:\nRed: 3\n\n");
    AwaitThat([&] { return result != S_OK || reportObserver_->Notifications().size() == 4; });
}

/// Lines may be lost, but not the connection.
void ScarceHost::ListenToConsole() {
    const Held<ExemptConsoleObserver> observer;
    const HRESULT result = InTheLibrary([&] { return SetConsoleOutput(morquilConsoleObserver, observer.Get()); });
    ExpectStated(result, S_OK, {E_OUTOFMEMORY});
    link.Push("VIDEO PROC AMP:\n# a line that is longer than what a small text holds\nGain: 5\n\n");
    EXPECT_TRUE(link.AwaitIdle());
    EXPECT_EQ(InTheLibrary([] { return SetConsoleOutput(morquilConsoleStandardOutput, nullptr); }), S_OK);
    EXPECT_EQ(observer->References(), 1U);
    EXPECT_TRUE(observer->Notifications().size() == 4 || ScarceMemory::HasRunOut());
    EXPECT_TRUE(link.IsOpen());
}

}  // namespace Morquil::Testing
