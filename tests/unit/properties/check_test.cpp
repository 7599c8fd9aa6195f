// What a device accepts now, checked before anything is sent.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "properties/property.h"
#include "tests/unit/properties/complete_host.h"

namespace Morquil::Testing {
namespace {

using namespace Properties;
using Reason = Refusal::Reason;

class CheckTest : public testing::Test {
protected:
    Checked CheckedFor(std::string_view name, std::string_view text) {
        return Check(*FindProperty(name), host.Device(), text);
    }
    Refusal RefusalFor(std::string_view name, std::string_view text) {
        const Checked checked = CheckedFor(name, text);
        const Refusal* const refusal = std::get_if<Refusal>(&checked);
        EXPECT_NE(refusal, nullptr) << name << " = " << text << " is accepted";
        return refusal != nullptr ? *refusal : Refusal{Reason::ReadOnly, {}};
    }
    std::string Words(std::string_view name, const std::vector<Value>& values) {
        std::string words;
        for (const Value& value : values) {
            words += (words.empty() ? "" : ", ") + FormatValue(FindProperty(name)->type, value);
        }
        return words;
    }

    CompleteHost host;
};

TEST_F(CheckTest, AcceptsWhatTheDeviceOffers) {
    EXPECT_EQ(CheckedFor("proc-amp.gain", "-60"), Checked(Value(std::int64_t{-60})));
    EXPECT_EQ(CheckedFor("output.option", "black"), Checked(Value(std::int64_t{1})));
    EXPECT_EQ(CheckedFor("aspect.size-x", "8"), Checked(Value(8.0)));
    EXPECT_EQ(CheckedFor("timecode.start", ""), Checked(Value(std::string())));
}

TEST_F(CheckTest, RefusesANumberOutsideItsRangeWithTheNearestInside) {
    const Refusal above = RefusalFor("proc-amp.gain", "99");
    EXPECT_EQ(above.reason, Reason::OutOfRange);
    EXPECT_EQ(above.text, "99 is outside -60 to 60");
    EXPECT_EQ(above.nearest, std::vector<Value>{std::int64_t{60}});
    EXPECT_EQ(RefusalFor("proc-amp.gain", "-99").nearest, std::vector<Value>{std::int64_t{-60}});
    EXPECT_EQ(RefusalFor("aspect.size-x", "0").text, "0.0 is outside 0.1 to 8.0");
}

TEST_F(CheckTest, RefusesAWordThatIsNotOfferedWithTheNearestThatAre) {
    host.DeviceSends("VIDEO OUTPUT AVAILABILITY:\nAvailable output option: Input Black\n\n");
    const Refusal refusal = RefusalFor("output.option", "Still");
    EXPECT_EQ(refusal.reason, Reason::NotOffered);
    EXPECT_EQ(refusal.text, "Still is not offered now; nearest: Input, Black");
    EXPECT_EQ(Words("output.option", refusal.nearest), "Input, Black");
}

TEST_F(CheckTest, SuggestsOnlyOfferedWordsForAWordThatDoesNotExist) {
    EXPECT_EQ(RefusalFor("output.option", "Stil").text, "'Stil' is not an output option; nearest: Still");
    host.DeviceSends("VIDEO OUTPUT AVAILABILITY:\nAvailable output option: Input Black\n\n");
    const Refusal refusal = RefusalFor("output.option", "Stil");
    EXPECT_EQ(refusal.reason, Reason::Malformed);
    EXPECT_EQ(refusal.text, "'Stil' is not an output option; there are Input, Black");
}

TEST_F(CheckTest, FollowsTheModesOnWhichAnOfferDepends) {
    const Property& line = *FindProperty("timecode.output-line");
    EXPECT_EQ(FormatOffer(line, Offered(line, host.Device())), "8 to 25");
    host.DeviceSends("VIDEO OUTPUT:\nVideo mode: 1080i50\n\n");
    EXPECT_EQ(FormatOffer(line, Offered(line, host.Device())), "8 to 20");
    EXPECT_EQ(RefusalFor("timecode.output-line", "25").text, "25 is outside 8 to 20");
}

TEST_F(CheckTest, RefusesWhatIsNotAValueAtAll) {
    EXPECT_EQ(RefusalFor("proc-amp.gain", "loud").reason, Reason::Malformed);
    EXPECT_EQ(RefusalFor("network.name", std::string(50, 'x')).reason, Reason::OutOfRange);
    EXPECT_EQ(RefusalFor("network.name", "two\nlines").reason, Reason::Malformed);
}

TEST_F(CheckTest, RefusesToSetWhatCanOnlyBeRead) {
    EXPECT_EQ(RefusalFor("device.name", "x").reason, Reason::ReadOnly);
    EXPECT_THROW(Set(*FindProperty("device.name"), host.Device(), std::string("x")), std::logic_error);
}

TEST_F(CheckTest, LeavesWhatTheDeviceHasNotReportedToTheDevice) {
    EXPECT_EQ(CheckOffered(*FindProperty("proc-amp.gain"), Offer(), std::int64_t{1000}), std::nullopt);
    EXPECT_EQ(CheckedFor("advanced.anti-alias", "on"), Checked(Value(true)));
}

TEST_F(CheckTest, SendsNothing) {
    const std::size_t before = host.SendCount();
    for (const Property& property : AllProperties()) {
        Check(property, host.Device(), "1");
    }
    EXPECT_EQ(host.SendCount(), before);
}

TEST_F(CheckTest, RefusesToNameAPresetThatTheDeviceDoesNotHave) {
    EXPECT_EQ(CheckedFor("preset.name.5", "x"), Checked(Value(std::string("x"))));
    host.DeviceSends("PRESET AVAILABILITY:\nPreset range: 1 4\n\n");
    EXPECT_NE(Read(*FindProperty("preset.name.4"), host.Device()), std::nullopt);
    EXPECT_EQ(Read(*FindProperty("preset.name.5"), host.Device()), std::nullopt);
    EXPECT_EQ(RefusalFor("preset.name.5", "x").text, "this device does not have it");
}

}  // namespace
}  // namespace Morquil::Testing
