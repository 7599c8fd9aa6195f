#include <gtest/gtest.h>

#include <cstdarg>
#include <memory>
#include <string>
#include <vector>

#include "protocol/blocks/all.h"
#include "protocol/format_text.h"
#include "protocol/message.h"

namespace Morquil {
namespace {

/// Keeps the calls of a writer.
class CallRecorder final : public IMessageSender {
public:
    explicit CallRecorder(bool result = true) : result_(result) {}

    void BeginMessage() override { calls.emplace_back("begin"); }
    void SendFormatted(const char* format, ...) override MORQUIL_PRINTF(2, 3) {
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

/// What the collector holds after the message when it held something before.
std::string TextAfterOther(const TextProtocolMessageBase& message) {
    MessageToString collector;
    collector.SendFormatted("before");
    message.WriteTo(collector);
    return std::string(collector.GetText());
}

template <class Message>
void ExpectSaysWhereItBeginsAndEnds(const std::string& header) {
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
    ExpectSaysWhereItBeginsAndEnds<MorquilDeviceMessage>("MORQUIL DEVICE");
    ExpectSaysWhereItBeginsAndEnds<VideoInputMessage>("VIDEO INPUT");
    ExpectSaysWhereItBeginsAndEnds<VideoInputAvailabilityMessage>("VIDEO INPUT AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<VideoOutputAvailabilityMessage>("VIDEO OUTPUT AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<SupportedConversionsMessage>("SUPPORTED CONVERSIONS");
    ExpectSaysWhereItBeginsAndEnds<VideoProcAmpAvailabilityMessage>("VIDEO PROC AMP AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<VideoAdjustMessage>("VIDEO ADJUST");
    ExpectSaysWhereItBeginsAndEnds<VideoAdjustAvailabilityMessage>("VIDEO ADJUST AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<NoiseReductionMessage>("NOISE REDUCTION");
    ExpectSaysWhereItBeginsAndEnds<NoiseReductionAvailabilityMessage>("NOISE REDUCTION AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<TestPatternAvailabilityMessage>("TEST PATTERN AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<VideoAdvancedAvailabilityMessage>("VIDEO ADVANCED AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<AncillaryDataAvailabilityMessage>("ANCILLARY DATA AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<GenlockMessage>("GENLOCK");
    ExpectSaysWhereItBeginsAndEnds<GenlockAvailabilityMessage>("GENLOCK AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<VariableAspectRatioMessage>("VARIABLE ASPECT RATIO");
    ExpectSaysWhereItBeginsAndEnds<VariableAspectRatioAvailabilityMessage>("VARIABLE ASPECT RATIO AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<AlignMessage>("ALIGN");
    ExpectSaysWhereItBeginsAndEnds<AudioMessage>("AUDIO");
    ExpectSaysWhereItBeginsAndEnds<AudioAvailabilityMessage>("AUDIO AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<Mode3DMessage>("MODE3D");
    ExpectSaysWhereItBeginsAndEnds<Mode3DAvailabilityMessage>("MODE3D AVAILABILITY");
    ExpectSaysWhereItBeginsAndEnds<NetworkConfigMessage>("NETWORK CONFIG");
    ExpectSaysWhereItBeginsAndEnds<DeviceFilenamesMessage>("DEVICE FILENAMES");
    ExpectSaysWhereItBeginsAndEnds<PresetMessage>("PRESET");
    ExpectSaysWhereItBeginsAndEnds<PresetAvailabilityMessage>("PRESET AVAILABILITY");
    // clang-format on
}

TEST(Writer, NeverSaysWhereFiveMessagesBeginAndEnd) {
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

TEST(Writer, ReturnsWhatTheSenderSaysOfTheMessage) {
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
