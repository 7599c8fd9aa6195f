#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "morquil.hpp"
#include "tests/unit/device/device_rig.h"

namespace Morquil::Testing {

/// A host connected, without a network, to a device that has reported every value. The device answers requests and
/// echoes whatever it is sent.
class CompleteHost {
public:
    CompleteHost() {
        rig_.link.AnswerWith([](const std::string& sent) { return AnswerTo(sent); });
        rig_.link.Push(Dump() + restOfDump);
        EXPECT_EQ(rig_.Connect(), S_OK);
        AwaitIdle();
    }

    const morquil::Device& Device() const { return device_; }

    /// Runs `change`, and waits until the device's echo has been handled. Returns the first block that was sent.
    template <class Change>
    std::string BlockSentBy(Change change) {
        const std::size_t before = rig_.link.Sends().size();
        change();
        AwaitIdle();
        const Texts sends = rig_.link.Sends();
        return sends.size() > before ? sends[before] : std::string();
    }
    std::size_t SendCount() const { return rig_.link.Sends().size(); }

    /// The device reports a change that another host or its front panel has made.
    void DeviceSends(const std::string& block) { rig_.DeviceSends(block); }

private:
    // What the recorded device does not have.
    static constexpr const char* restOfDump =
        "VIDEO ADJUST:\nAspect fill luma: 64\nAspect fill Cb: 512\nAspect fill Cr: 512\n\n"
        "VIDEO ADJUST AVAILABILITY:\nAspect fill luma range: 64 940\nAspect fill Cb range: 64 960\n"
        "Aspect fill Cr range: 64 960\n\n";

    static const std::string& Dump() {
        static const std::string dump = [] {
            std::ifstream file(MORQUIL_TEST_DATA "/full_dump.txt", std::ios::binary);
            return std::string(std::istreambuf_iterator<char>(file), {});
        }();
        return dump;
    }

    static std::string AnswerTo(const std::string& sent) {
        if (sent == "PING\n\n") {
            return "ACK\n\n";
        }
        const bool isRequest = sent == BlockOf(HeaderOf(sent));
        return "ACK\n\n" + (isRequest ? BlockInDump(HeaderOf(sent)) : sent);
    }
    static std::string BlockInDump(const std::string& header) {
        const std::size_t begin = Dump().find("\n" + header + ":\n") + 1;
        return Dump().substr(begin, Dump().find("\n\n", begin) + 2 - begin);
    }

    void AwaitIdle() { EXPECT_TRUE(rig_.link.AwaitIdle()); }

    morquil::Pointer<IMorquilDevice> Reference() {
        rig_.device->AddRef();
        return morquil::Pointer<IMorquilDevice>::Adopt(rig_.device);
    }

    Watchdog watchdog_;
    DeviceRig rig_;
    morquil::Device device_{{}, Reference(), std::make_shared<const std::atomic<bool>>(true)};
};

}  // namespace Morquil::Testing
