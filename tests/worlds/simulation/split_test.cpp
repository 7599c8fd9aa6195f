// A device's whole state as it may arrive over a network: in two pieces split anywhere, or cut off anywhere.
//   MORQUIL_SPLITS=N  only every Nth position (1), and all positions around the ends of blocks
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/kit/owned_bstr.h"
#include "tests/kit/temporary_folder.h"
#include "tests/worlds/simulation/device_messages.h"
#include "tests/worlds/simulation/environment.h"
#include "tests/worlds/simulation/every_answer.h"
#include "tests/worlds/simulation/expected_mirror.h"
#include "tests/worlds/simulation/quiet_console.h"
#include "tests/worlds/simulation/visit.h"

namespace Morquil::Testing::Worlds {
namespace {

using Testing::OwnedBstr;
using Testing::Utf16;
using Calls = std::vector<std::uint32_t>;

const std::string& Dump() {
    static const std::string dump = Testing::ContentOf(std::string(MORQUIL_TEST_DATA) + "/full_dump.txt");
    return dump;
}

/// Where the dump's blocks end.
std::vector<std::size_t> BlockEnds() {
    std::vector<std::size_t> ends;
    for (std::size_t end = Dump().find("\n\n"); end != std::string::npos; end = Dump().find("\n\n", end + 1)) {
        ends.push_back(end + 2);
    }
    return ends;
}

/// The positions before the bytes of the dump, and the one after them.
std::set<std::size_t> Places() {
    std::set<std::size_t> places{Dump().size()};
    for (std::size_t place = 0; place < Dump().size(); place += FromEnvironment("MORQUIL_SPLITS", 1)) {
        places.insert(place);
    }
    for (const std::size_t end : BlockEnds()) {
        places.insert({end - 2, end - 1, end});
    }
    return places;
}

Wire TwoPieces(std::size_t split) {
    Wire wire;
    wire.Say(Dump().substr(0, split));
    wire.Say(Dump().substr(split));
    return wire;
}

struct BlockCalls {
    std::size_t end;
    Calls calls;
};

/// Where the dump's blocks end, and the host's notifications then.
const std::vector<BlockCalls>& CallsOfBlocks() {
    static const std::vector<BlockCalls> blocks = [] {
        std::vector<BlockCalls> list;
        ExpectedMirror mirror;
        std::size_t begin = 0;
        for (const std::size_t end : BlockEnds()) {
            const DeviceMessage message = BlockMessage(std::string_view(Dump()).substr(begin, end - begin));
            const auto changed = mirror.Take(message.header, message.lines).changed;
            list.push_back({end, Calls(changed.begin(), changed.end())});
            begin = end;
        }
        return list;
    }();
    return blocks;
}

/// A host's notifications for the first `count` bytes, and `Connected` with the last.
Calls CallsOf(std::size_t count) {
    Calls all;
    for (const auto& [end, calls] : CallsOfBlocks()) {
        if (end <= count) {
            all.insert(all.end(), calls.begin(), calls.end());
        }
    }
    if (count == Dump().size()) {
        all.push_back(Listener::connected);
    }
    return all;
}

struct Picture {
    Calls calls;
    std::uint64_t answers = 0;
};

Picture SeenAt(std::size_t split) {
    const QuietConsole quiet;
    const Visit visit(split + 1, TwoPieces(split));
    return {visit.Calls(), DigestOfEveryAnswer(visit.Device())};
}

std::string AnswersAt(std::size_t split) {
    const QuietConsole quiet;
    return EveryAnswer(Visit(split + 1, TwoPieces(split)).Device());
}

/// The first line that differs, in both texts.
std::string FirstDifference(const std::string& one, const std::string& other) {
    std::istringstream lines(one);
    std::istringstream otherLines(other);
    std::string line;
    std::string otherLine;
    while (line == otherLine && std::getline(lines, line)) {
        std::getline(otherLines, otherLine);
    }
    return '"' + line + "\", not \"" + otherLine + '"';
}

/// The settings file; it also holds what no getter returns.
std::string SettingsAt(std::size_t split) {
    static const Testing::TemporaryFolder folder;
    static const std::string path = folder.PathOf("state");
    const QuietConsole quiet;
    const Visit visit(split + 1, TwoPieces(split));
    visit.Device().SaveSettingsFile(OwnedBstr(Utf16(path.begin(), path.end())).Get());
    return Testing::ContentOf(path);
}

/// What is compared below is not empty.
TEST(Splits, AnswersAreOfEveryKind) {
    const std::string answers = AnswersAt(0);
    for (const char* const answer :
         {"IMorquilDevice::GetDeviceName 0 Rack Unit 4K\n", "IMorquilVideoProcAmp::GetSaturation 0 5\n",
          "IMorquilAspectFill::GetCrRange 0 64\nIMorquilAspectFill::GetCrRange 0 960\n",
          "IMorquilAudioMapping::GetAudioMap 0 15\n", "IMorquilInputConfiguration::IsVideoSourceAvailable 0 1\n",
          "IMorquilDevice::IsConversionSupported 0 1\n", "IMorquilPreset::GetPresetName 0 Archive SD\n"}) {
        EXPECT_NE(answers.find(answer), std::string::npos) << answer;
    }
}

TEST(Splits, AllProduceTheSameStateAndCalls) {
    const Picture whole = SeenAt(0);
    ASSERT_EQ(whole.calls, CallsOf(Dump().size()));
    ASSERT_EQ(std::set<std::uint32_t>(whole.calls.begin(), whole.calls.end()).size(), Listener::propertySets + 1);
    for (const std::size_t split : Places()) {
        const Picture picture = SeenAt(split);
        ASSERT_EQ(picture.calls, whole.calls) << "split before byte " << split;
        if (picture.answers != whole.answers) {
            FAIL() << "split before byte " << split << ": " << FirstDifference(AnswersAt(split), AnswersAt(0));
        }
    }
}

TEST(Splits, AtTheEndsOfBlocksProduceTheSameSettingsFile) {
    const std::string whole = SettingsAt(0);
    ASSERT_NE(whole.find("Align size X left: "), std::string::npos);
    for (const std::size_t end : BlockEnds()) {
        for (const std::size_t split : {end - 2, end - 1, end}) {
            ASSERT_EQ(SettingsAt(split), whole) << "split before byte " << split;
        }
    }
}

struct Loss {
    const char* name;
    Ending ending;
    Time delay;
    bool closesAtReceive;
};

void PrintTo(const Loss& loss, std::ostream* out) {
    *out << loss.name;
}

class Losses : public testing::TestWithParam<Loss> {
protected:
    /// The calls of a connection that is lost after the first `count` bytes.
    static Calls CallsWithLossAfter(std::size_t count) {
        Wire wire;
        wire.Say(Dump().substr(0, count));
        wire.End(GetParam().ending, GetParam().delay);
        NetworkManners manners;
        manners.closesAtReceive = GetParam().closesAtReceive;
        const QuietConsole quiet;
        return Visit(count + 1, std::move(wire), manners).Calls();
    }
    static bool IsAtOnce() { return GetParam().delay == 0; }
    /// Everything that arrives before the end is notified; nothing that is lost with a reset is.
    static Calls ExpectedOf(std::size_t count) {
        Calls calls = IsAtOnce() && GetParam().ending == Ending::Reset ? Calls() : CallsOf(count);
        calls.push_back(Listener::disconnected);
        return calls;
    }
};

TEST_P(Losses, AtEveryByteReportWhatCameBeforeAndOneEnd) {
    for (const std::size_t count : Places()) {
        const Calls calls = CallsWithLossAfter(count);
        Calls expected = ExpectedOf(count);
        if (IsAtOnce() && calls.size() < expected.size()) {
            // Another thread calls `Connected`: an end that arrives with the last block may come first.
            std::erase(expected, Listener::connected);
        }
        ASSERT_EQ(calls, expected) << "lost after " << count << " bytes";
    }
}

INSTANTIATE_TEST_SUITE_P(Splits, Losses,
                         testing::Values(Loss{"Close", Ending::Close, 1, false},
                                         Loss{"CloseWithData", Ending::Close, 0, false},
                                         Loss{"CloseWithDataFoundByAReceive", Ending::Close, 0, true},
                                         Loss{"Reset", Ending::Reset, 1, false},
                                         Loss{"ResetWithData", Ending::Reset, 0, false}),
                         [](const auto& loss) { return loss.param.name; });

}  // namespace
}  // namespace Morquil::Testing::Worlds
