#include "tests/worlds/allocation/scarce_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <new>
#include <thread>
#include <utility>

#include "tests/unit/device/device_texts.h"
#include "tests/worlds/allocation/exempt_comms.h"

namespace Morquil::Testing {
namespace {

/// Ends each answer with its number: a reader of the number has read everything before it.
std::string Version(std::size_t number) {
    char text[64];
    std::snprintf(text, sizeof text, "MORQUIL DEVICE:\nSoftware Version: 0x%x\n\n", static_cast<unsigned>(number));
    return text;
}

}  // namespace

void ExpectStated(HRESULT result, HRESULT success, const std::set<HRESULT>& failures) {
    EXPECT_TRUE(result == success || (ScarceMemory::HasRunOut() && failures.count(result) != 0)) << std::hex << result;
}

ScarceHost::ScarceHost() {
    link.AnswerWith([this](const std::string& sent) { return DeviceAnswer(sent) + Version(link.Sends().size()); });
    link.Push(GreetingText());
}

ScarceHost::~ScarceHost() {
    Release();
    EXPECT_TRUE(connectionObserver_->AwaitReferences(1));
    EXPECT_TRUE(propertyObserver_->AwaitReferences(1));
    EXPECT_TRUE(receiptObserver_->AwaitReferences(1));
    EXPECT_TRUE(reportObserver_->AwaitReferences(1));
}

void ScarceHost::Create() {
    auto comms = std::make_unique<ExemptComms>(link.MakeComms());
    try {
        device = InTheLibrary([&] { return new CMorquilDevice(std::move(comms), CMorquilDevice::initialStateLimit); });
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(ScarceMemory::HasRunOut());
    }
}

void ScarceHost::Connect() {
    _MorquilConnectToFailure reason{};
    const HRESULT result = InTheLibrary([&] { return device->Connect(address_.Get(), nullptr, &reason); });
    ExpectStated(result, S_OK, {E_FAIL});
    EXPECT_EQ(reason, morquilConnectToFailureNoResponse);
}

void ScarceHost::BeginConnect() {
    _MorquilConnectToFailure reason{};
    const HRESULT result =
        InTheLibrary([&] { return device->Connect(address_.Get(), connectionObserver_.Get(), &reason); });
    ExpectStated(result, S_FALSE, {E_FAIL});
}

void ScarceHost::ConnectAsync() {
    _MorquilConnectToFailure reason{};
    const HRESULT result =
        InTheLibrary([&] { return device->Connect(address_.Get(), connectionObserver_.Get(), &reason); });
    ExpectStated(result, S_FALSE, {E_FAIL});
    isConnecting_ = SUCCEEDED(result);
    if (isConnecting_) {
        // One of the two is notified, whatever happens.
        EXPECT_TRUE(connectionObserver_->AwaitNotified(1));
    }
}

void ScarceHost::CreateConnected() {
    Create();
    ConnectAsync();
    AddObservers();
    EXPECT_TRUE(link.AwaitIdle());
}

void ScarceHost::Disconnect() {
    EXPECT_EQ(InTheLibrary([&] { return device->Disconnect(); }), S_OK);
}

void ScarceHost::Release() {
    if (CMorquilDevice* const released = std::exchange(device, nullptr)) {
        InTheLibrary([&] { return released->Release(); });
    }
    EXPECT_TRUE(link.AwaitDestroyed());
}

void ScarceHost::AddObservers() {
    for (const _MorquilPropertySetId set : {morquilVideoProcAmpPropertySetId, morquilNoiseReductionPropertySetId}) {
        const HRESULT result = InTheLibrary([&] { return device->AddPropertyObserver(propertyObserver_.Get(), set); });
        ExpectStated(result, S_OK, {E_OUTOFMEMORY});
    }
}

void ScarceHost::RemoveObservers() {
    for (const _MorquilPropertySetId set : {morquilVideoProcAmpPropertySetId, morquilNoiseReductionPropertySetId}) {
        EXPECT_EQ(InTheLibrary([&] { return device->RemovePropertyObserver(propertyObserver_.Get(), set); }), S_OK);
    }
}

void ScarceHost::Report() {
    link.Push("VIDEO PROC AMP:\nGain: 5\n\nVIDEO OUTPUT:\nVideo mode: 720p60\n\nNOISE REDUCTION:\nBias: 3\n\n");
    AwaitThat([&] { return propertyObserver_->Notifications().size() == 2; });
}

/// A file that could not be written is unchanged, and no other file is left beside it.
void ScarceHost::SaveSettings() {
    const std::string before = ContentOf(file_);
    const HRESULT result = InTheLibrary([&] { return device->SaveSettingsFile(path_.Get()); });
    ExpectStated(result, S_FALSE, {S_OK, E_OUTOFMEMORY});
    if (result != S_FALSE) {
        EXPECT_EQ(ContentOf(file_), before);
    }
    EXPECT_LE(folder_.Names().size(), 1U);
}

void ScarceHost::LoadSettings() {
    EXPECT_EQ(InTheLibrary([&] { return device->LoadSettingsFile(path_.Get()); }), S_FALSE);
}

void ScarceHost::Set(const std::function<HRESULT()>& setter, const std::function<bool()>& isDone) {
    const HRESULT result = InTheLibrary(setter);
    ExpectStated(result, S_OK, {E_OUTOFMEMORY});
    if (result == S_OK) {
        AwaitThat([&] { return isDone() && HasReceivedEveryAnswer(); });
    }
}

void ScarceHost::GetText(const std::function<HRESULT(BSTR*)>& getter) {
    BSTR given = nullptr;
    const HRESULT result = InTheLibrary([&] { return getter(&given); });
    ExpectStated(result, S_OK, {E_FAIL});
    EXPECT_EQ(given != nullptr, result == S_OK);
    SysFreeString(given);
}

bool ScarceHost::HasReceivedEveryAnswer() const {
    UINT answers = 0;
    return device->GetSoftwareVersion(&answers) == S_OK && answers == link.Sends().size();
}

bool ScarceHost::HasGone() const {
    if (!isConnecting_) {
        return true;
    }
    const std::vector<std::string> notifications = connectionObserver_->Notifications();
    return std::find(notifications.begin(), notifications.end(), "disconnected") != notifications.end();
}

/// A connection that cannot do its work for lack of memory ends, and the host is notified.
void ScarceHost::AwaitThat(const std::function<bool()>& isDone) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(4);
    bool isOver = isDone();
    while (!isOver && !HasGone() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
        isOver = isDone();
    }
    EXPECT_TRUE(isOver || (HasGone() && ScarceMemory::HasRunOut())) << "neither done nor notified of the end";
}

}  // namespace Morquil::Testing
