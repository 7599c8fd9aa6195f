#include "tests/system/host/refusals.h"

#include <gtest/gtest.h>

#include <thread>

namespace Morquil::Testing {

std::string NotificationOfLastWords(const Refusal& refusal) {
    ScriptedDevice device;
    ConnectionObserver observer;
    const RawObject refused = ConnectAsync(device.Address(), observer);
    EXPECT_TRUE(device.AwaitHost());

    device.Send(refusal.greeting);
    device.HangUp();

    EXPECT_TRUE(observer.AwaitCalls(1));
    const Strings notifications = observer.Notifications();
    return notifications.empty() ? "nothing" : notifications.front();
}

ConnectOutcome ConnectToLastWords(const Refusal& refusal) {
    ScriptedDevice device;
    std::thread refusing([&] {
        EXPECT_TRUE(device.AwaitHost());
        device.Send(refusal.greeting);
        device.HangUp();
    });
    ConnectOutcome outcome = Connect(device.Address());
    refusing.join();
    return outcome;
}

}  // namespace Morquil::Testing
