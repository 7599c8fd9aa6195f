#include "tests/kit/scripted_device.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Morquil::Testing {
namespace {

constexpr std::string_view blockEnd = "\n\n";

bool IsRequest(const std::string& block) {
    const bool headerOnly = block.find('\n') + blockEnd.size() == block.size();
    const std::string_view header = std::string_view(block).substr(0, block.find(':'));
    return headerOnly && (header.ends_with(" AVAILABILITY") || header == "SUPPORTED CONVERSIONS");
}

}  // namespace

ScriptedDevice::ScriptedDevice(DeviceScript script)
    : script_(std::move(script)),
      network_({[this] { return script_.greeting; }, [this](std::string_view bytes) { return Answer(bytes); }}) {}

void ScriptedDevice::SetAcknowledging(bool acknowledges) {
    network_.Do([this, acknowledges] { script_.acknowledges = acknowledges; });
}

std::string ScriptedDevice::Answer(std::string_view bytes) {
    unfinished_ += bytes;
    std::string answer;
    for (std::size_t end = unfinished_.find(blockEnd); end != std::string::npos; end = unfinished_.find(blockEnd)) {
        const std::string block = unfinished_.substr(0, end + blockEnd.size());
        unfinished_.erase(0, block.size());
        answer += AnswerBlock(block);
    }
    return answer;
}

std::string ScriptedDevice::AnswerBlock(const std::string& block) {
    {
        const std::lock_guard lock(lock_);
        blocks_.push_back(block);
        arrived_.notify_all();
    }
    if (script_.respond) {
        return script_.respond(block);
    }
    const auto found =
        IsRequest(block) ? script_.answers.find(block.substr(0, block.find(':'))) : script_.answers.end();
    const std::string answer = found != script_.answers.end() ? found->second : std::string();
    return (script_.acknowledges ? "ACK\n\n" : "") + answer;
}

std::string ScriptedDevice::NextBlock(int seconds) {
    std::unique_lock lock(lock_);
    if (!arrived_.wait_for(lock, std::chrono::seconds(seconds), [this] { return !blocks_.empty(); })) {
        return {};
    }
    std::string block = std::move(blocks_.front());
    blocks_.pop_front();
    return block;
}

std::string ScriptedDevice::NextChange() {
    std::string block = NextBlock();
    while (IsRequest(block)) {
        block = NextBlock();
    }
    return block;
}

bool ScriptedDevice::HasReceivedMore() {
    bool more = false;
    network_.Do([this, &more] {
        const std::lock_guard lock(lock_);
        more = !blocks_.empty() || !unfinished_.empty();
    });
    return more;
}

bool ScriptedDevice::HasReceivedChange() {
    bool change = false;
    network_.Do([this, &change] {
        const std::lock_guard lock(lock_);
        change = !std::all_of(blocks_.begin(), blocks_.end(), IsRequest) || !unfinished_.empty();
    });
    return change;
}

}  // namespace Morquil::Testing
