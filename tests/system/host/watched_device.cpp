#include "tests/system/host/watched_device.h"

#include <gtest/gtest.h>

#include <chrono>
#include <utility>

#include "tests/system/host/host.h"

namespace Morquil::Testing {

// clang-format off
const std::vector<const char*> propertySets = {
    "inco", "ouco", "vpap", "vtpa", "viad", "nred", "coco", "vidc", "aspf", "time",
    "clca", "viin", "refe", "vara", "aump", "3dmo", "ntwk", "fnam", "prst", "devc"};
// clang-format on

namespace {

std::int32_t IdOf(const char* text) {
    return FourCharacters({text[0], text[1], text[2], text[3], '\0'});
}

}  // namespace

WatchedDevice::WatchedDevice(ScriptedDevice& script, const RawObject& device) : script_(script), device_(device) {
    observer_.InCall([this](const std::string& id) { Note(id); });
    for (const char* const id : propertySets) {
        EXPECT_EQ(device_.Call(Slot::addPropertyObserver, observer_.Get(), IdOf(id)), ok) << id;
    }
}

WatchedDevice::~WatchedDevice() {
    for (const char* const id : propertySets) {
        EXPECT_EQ(device_.Call(Slot::removePropertyObserver, observer_.Get(), IdOf(id)), ok) << id;
    }
}

// A new name of the device follows the text. Blocks are applied in order, so an observer that is notified of the name
// has been notified of everything before it.
std::string WatchedDevice::Report(const std::string& text) {
    const std::string name = "Report " + std::to_string(++reports_);
    {
        const std::lock_guard lock(lock_);
        awaitedName_.assign(name.begin(), name.end());
        nameCame_ = false;
    }
    script_.Send(text + "MORQUIL DEVICE:\nModel name: " + name + "\n\n");
    std::unique_lock lock(lock_);
    EXPECT_TRUE(reached_.wait_for(lock, std::chrono::seconds(10), [this] { return nameCame_; })) << text;
    awaitedName_.clear();
    return std::exchange(notified_, {});
}

void WatchedDevice::Note(const std::string& id) {
    const std::u16string name = id == "devc" ? DeviceName(device_) : std::u16string();
    const std::lock_guard lock(lock_);
    if (!name.empty() && name == awaitedName_) {
        nameCame_ = true;
        reached_.notify_all();
    } else {
        notified_ += (notified_.empty() ? "" : " ") + id;
    }
}

}  // namespace Morquil::Testing
