#include "gateway/fleet/greeting.h"

#include <gtest/gtest.h>

namespace Morquil::Gateway {
namespace {

struct Case {
    std::string_view bytes;
    std::optional<LinkState> state;     // while more may arrive
    std::optional<LinkState> atTheEnd;  // if nothing more does
};
const Case cases[] = {
    {"", std::nullopt, LinkState::NoDevice},
    {"PROTO", std::nullopt, LinkState::WrongProtocol},
    {"SSH-2.0-x\r\n", LinkState::WrongProtocol, LinkState::WrongProtocol},
    {"PROTOCOL PREAMBLE:\nVersion: 2.22\n\n", std::nullopt, LinkState::NoDevice},
    {"PROTOCOL PREAMBLE:\nVersion: 2.2", std::nullopt, LinkState::NoDevice},
    {"PROTOCOL PREAMBLE:\nVersion: 2.21\n\n", LinkState::WrongProtocol, LinkState::WrongProtocol},
    {"PROTOCOL PREAMBLE:\r\nVersion: 2.22\r\n\r\nX:\r\nRemote lock: true\r\n", LinkState::RemoteLocked,
     LinkState::RemoteLocked},
    {"PROTOCOL PREAMBLE:\nVersion: 2.22\n\nX:\nRemote lock: false\n", LinkState::Connected, LinkState::Connected},
    {"PROTOCOL PREAMBLE:\nVersion: 2.22\n\nX:\nRemote lock: tr", std::nullopt, LinkState::NoDevice},
};

std::optional<LinkState> StateOf(const std::optional<Diagnosis>& diagnosis) {
    return diagnosis ? std::optional(diagnosis->state) : std::nullopt;
}

TEST(Greeting, IsJudgedByItsFirstLines) {
    for (const Case& greeting : cases) {
        EXPECT_EQ(StateOf(JudgeGreeting("a", greeting.bytes, false)), greeting.state) << greeting.bytes;
        EXPECT_EQ(StateOf(JudgeGreeting("a", greeting.bytes, true)), greeting.atTheEnd) << greeting.bytes;
    }
}

TEST(Greeting, SaysWhichVersionADeviceSpeaks) {
    const auto diagnosis = JudgeGreeting("10.0.0.1", "PROTOCOL PREAMBLE:\nVersion: 2.21\n", false);
    ASSERT_TRUE(diagnosis);
    EXPECT_EQ(diagnosis->sentence, "the converter at 10.0.0.1 speaks protocol 2.21, not 2.22; update its firmware");
}

TEST(Greeting, DoesNotRepeatForeignBytes) {
    const auto diagnosis = JudgeGreeting("a", "PROTOCOL PREAMBLE:\nVersion: \x1b[2J\n", false);
    ASSERT_TRUE(diagnosis);
    EXPECT_EQ(diagnosis->sentence.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace Morquil::Gateway
