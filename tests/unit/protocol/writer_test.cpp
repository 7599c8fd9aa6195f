#include <gtest/gtest.h>

#include <cstdarg>
#include <memory>
#include <string>
#include <vector>

#include "protocol/blocks/all.h"
#include "protocol/table/message.h"
#include "protocol/text/format_text.h"

namespace Morquil {
namespace {

/// Keeps the calls of a writer.
class CallRecorder final : public IMessageSender {
public:
    explicit CallRecorder(bool result = true) : result_(result) {}

    void BeginMessage() override { calls.emplace_back("begin"); }
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override {
        char piece[256];
        std::va_list arguments;
        va_start(arguments, format);
        FormatText(piece, sizeof piece, format, arguments);
        va_end(arguments);
        calls.emplace_back(piece);
    }
    bool EndMessage() override {
        calls.emplace_back("end");
        return result_;
    }

    std::vector<std::string> calls;

private:
    bool result_;
};

using Calls = std::vector<std::string>;

Calls CallsOf(const TextProtocolMessageBase& message) {
    CallRecorder recorder;
    message.WriteTo(recorder);
    return recorder.calls;
}

/// The collector's text after the message if it held something before.
std::string TextAfterOther(const TextProtocolMessageBase& message) {
    MessageToString collector;
    collector.SendFormatted("before");
    message.WriteTo(collector);
    return std::string(collector.GetText());
}

template <class Message>
void ExpectMarksBeginAndEnd(const std::string& header) {
    EXPECT_EQ(CallsOf(Message()), (Calls{"begin", header + ":\n", "\n", "end"}));
    EXPECT_EQ(TextAfterOther(Message()), header + ":\n\n");
}

template <class Message>
void ExpectJoinsWhatIsThere(const std::string& header) {
    EXPECT_EQ(CallsOf(Message()), (Calls{header + ":\n", "\n"}));
    EXPECT_EQ(TextAfterOther(Message()), "before" + header + ":\n\n");
}

TEST(Writer, WritesOnlyHeaderAndEmptyLineOfAMessageWithoutFields) {
    // clang-format off
    ExpectMarksBeginAndEnd<MorquilDeviceMessage>("MORQUIL DEVICE");
    ExpectMarksBeginAndEnd<VideoInputMessage>("VIDEO INPUT");
    ExpectMarksBeginAndEnd<VideoInputAvailabilityMessage>("VIDEO INPUT AVAILABILITY");
    ExpectMarksBeginAndEnd<VideoOutputAvailabilityMessage>("VIDEO OUTPUT AVAILABILITY");
    ExpectMarksBeginAndEnd<SupportedConversionsMessage>("SUPPORTED CONVERSIONS");
    ExpectMarksBeginAndEnd<VideoProcAmpAvailabilityMessage>("VIDEO PROC AMP AVAILABILITY");
    ExpectMarksBeginAndEnd<VideoAdjustMessage>("VIDEO ADJUST");
    ExpectMarksBeginAndEnd<VideoAdjustAvailabilityMessage>("VIDEO ADJUST AVAILABILITY");
    ExpectMarksBeginAndEnd<NoiseReductionMessage>("NOISE REDUCTION");
    ExpectMarksBeginAndEnd<NoiseReductionAvailabilityMessage>("NOISE REDUCTION AVAILABILITY");
    ExpectMarksBeginAndEnd<TestPatternAvailabilityMessage>("TEST PATTERN AVAILABILITY");
    ExpectMarksBeginAndEnd<VideoAdvancedAvailabilityMessage>("VIDEO ADVANCED AVAILABILITY");
    ExpectMarksBeginAndEnd<AncillaryDataAvailabilityMessage>("ANCILLARY DATA AVAILABILITY");
    ExpectMarksBeginAndEnd<GenlockMessage>("GENLOCK");
    ExpectMarksBeginAndEnd<GenlockAvailabilityMessage>("GENLOCK AVAILABILITY");
    ExpectMarksBeginAndEnd<VariableAspectRatioMessage>("VARIABLE ASPECT RATIO");
    ExpectMarksBeginAndEnd<VariableAspectRatioAvailabilityMessage>("VARIABLE ASPECT RATIO AVAILABILITY");
    ExpectMarksBeginAndEnd<AlignMessage>("ALIGN");
    ExpectMarksBeginAndEnd<AudioMessage>("AUDIO");
    ExpectMarksBeginAndEnd<AudioAvailabilityMessage>("AUDIO AVAILABILITY");
    ExpectMarksBeginAndEnd<Mode3DMessage>("MODE3D");
    ExpectMarksBeginAndEnd<Mode3DAvailabilityMessage>("MODE3D AVAILABILITY");
    ExpectMarksBeginAndEnd<NetworkConfigMessage>("NETWORK CONFIG");
    ExpectMarksBeginAndEnd<DeviceFilenamesMessage>("DEVICE FILENAMES");
    ExpectMarksBeginAndEnd<PresetMessage>("PRESET");
    ExpectMarksBeginAndEnd<PresetAvailabilityMessage>("PRESET AVAILABILITY");
    // clang-format on
}

TEST(Writer, NeverMarksTheBeginAndEndOfFiveMessages) {
    ExpectJoinsWhatIsThere<VideoOutputMessage>("VIDEO OUTPUT");
    ExpectJoinsWhatIsThere<VideoProcAmpMessage>("VIDEO PROC AMP");
    ExpectJoinsWhatIsThere<TestPatternMessage>("TEST PATTERN");
    ExpectJoinsWhatIsThere<VideoAdvancedMessage>("VIDEO ADVANCED");
    ExpectJoinsWhatIsThere<AncillaryDataMessage>("ANCILLARY DATA");
}

TEST(Writer, SendsOnePieceForEveryLineWithOneValue) {
    GenlockMessage message;
    message.signalLocked.Set(true);
    message.type.Set(morquilAPIVideoReferenceTypeInternal);
    message.lineOffset.Set(-5);
    EXPECT_EQ(CallsOf(message), (Calls{"begin", "GENLOCK:\n", "Type: Internal\n", "Line offset: -5\n",
                                       "Signal locked: true\n", "\n", "end"}));
}

TEST(Writer, WritesExactlyTheFieldThatASetterChanges) {
    NoiseReductionMessage message;
    message.enabled.Set(true);
    EXPECT_EQ(TextOf(message), "NOISE REDUCTION:\nEnabled: true\n\n");
}

TEST(Writer, ReturnsTheResultOfTheSender) {
    CallRecorder takes(true);
    EXPECT_TRUE(GenlockMessage().WriteTo(takes));
    CallRecorder refuses(false);
    EXPECT_FALSE(GenlockMessage().WriteTo(refuses));
}

TEST(Writer, WritesAListThatWasReceivedEmpty) {
    VideoInputAvailabilityMessage message;
    message.audioSources.MarkReceived();
    EXPECT_EQ(TextOf(message), "VIDEO INPUT AVAILABILITY:\nAudio sources:\n\n");
}

TEST(Writer, WritesNoLineForAValueThatHasNoWord) {
    VideoOutputMessage message;
    message.videoDemuxMode.Set(3);
    message.quadSdiOutput.Set(-1);
    message.hdmiOutput.Set(1000);
    EXPECT_EQ(TextOf(message), "VIDEO OUTPUT:\n\n");
}

TEST(Writer, WritesNoTransitionSettingOfMinusOne) {
    VideoOutputMessage message;
    message.transitionSetting.Set(-1);
    EXPECT_EQ(TextOf(message), "VIDEO OUTPUT:\n\n");
}

TEST(Message, IsMadeWithoutFieldsAndRemembersItsText) {
    const VideoOutputMessage message;
    EXPECT_TRUE(message.recordSentText);
    EXPECT_TRUE(IsEmpty<VideoOutputChangeSet>(message));
}

TEST(Message, IsTheSameAsAnotherWithTheSameText) {
    GenlockMessage first;
    GenlockMessage second;
    first.lineOffset.Set(5);
    first.pixelOffset.Set(6);
    second.pixelOffset.Set(6);
    second.lineOffset.Set(5);
    EXPECT_EQ(TextOf(first), TextOf(second));
    second.lineOffset.Set(4);
    EXPECT_NE(TextOf(first), TextOf(second));
}

TEST(Message, TakesOverAWholeChangeSet) {
    PresetChangeSet set;
    set.presetName[5].Set("Last");
    EXPECT_EQ(TextOf(PresetMessage(set)), "PRESET:\nPresetName5: Last\n\n");
}

}  // namespace
}  // namespace Morquil
