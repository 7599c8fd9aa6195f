#include "transport/morquil_text_protocol_client.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/kit/fake_comms.h"
#include "tests/kit/monitor.h"
#include "tests/kit/watchdog.h"

namespace Morquil {
namespace {

using Testing::FakeConnection;
using Testing::Monitor;
using Testing::Watchdog;

/// Records the text of every received block and handles the echo of a sent one as the device object does.
class BlockClient final : public MorquilTextProtocolClient {
public:
    explicit BlockClient(FakeConnection& connection) : MorquilTextProtocolClient(connection.MakeComms()) {}
    ~BlockClient() override { Stop(); }

    /// The blocks so far, each with its classification: "echo" or "change".
    std::vector<std::string> Blocks() const {
        const auto lock = Monitor::Enter();
        return blocks_;
    }

    bool stopsListening = false;

private:
    void OnConnectionChanged(bool) override {}

    template <class Description>
    void Note(const ChangeSetOf<Description>& set) {
        const std::string text = BlockText<Description>(set);
        {
            const auto lock = Monitor::Enter();
            blocks_.push_back((IsSentText(text) ? "echo " : "change ") + text);
        }
        DropSentThrough(text);
        if (stopsListening) {
            StopListening();
        }
    }

    // clang-format off
    void OnProtocolPreamble(const ProtocolPreambleChangeSet&) override {}
    void OnMorquilDevice(const MorquilDeviceChangeSet& set) override { Note<MorquilDeviceChangeSet>(set); }
    void OnVideoInput(const VideoInputChangeSet& set) override { Note<VideoInputChangeSet>(set); }
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet&) override {}
    void OnVideoOutput(const VideoOutputChangeSet& set) override { Note<VideoOutputChangeSet>(set); }
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet&) override {}
    void OnSupportedConversions(const SupportedConversionsChangeSet&) override {}
    void OnVideoProcAmp(const VideoProcAmpChangeSet& set) override { Note<VideoProcAmpChangeSet>(set); }
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet&) override {}
    void OnVideoAdjust(const VideoAdjustChangeSet& set) override { Note<VideoAdjustChangeSet>(set); }
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet&) override {}
    void OnNoiseReduction(const NoiseReductionChangeSet& set) override { Note<NoiseReductionChangeSet>(set); }
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet&) override {}
    void OnTestPattern(const TestPatternChangeSet& set) override { Note<TestPatternChangeSet>(set); }
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet&) override {}
    void OnVideoAdvanced(const VideoAdvancedChangeSet& set) override { Note<VideoAdvancedChangeSet>(set); }
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet&) override {}
    void OnAncillaryData(const AncillaryDataChangeSet& set) override { Note<AncillaryDataChangeSet>(set); }
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet&) override {}
    void OnGenlock(const GenlockChangeSet& set) override { Note<GenlockChangeSet>(set); }
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet&) override {}
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) override {
        Note<VariableAspectRatioChangeSet>(set);
    }
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet&) override {}
    void OnAlign(const AlignChangeSet& set) override { Note<AlignChangeSet>(set); }
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet&) override {}
    void OnAudio(const AudioChangeSet& set) override { Note<AudioChangeSet>(set); }
    void OnAudioAvailability(const AudioAvailabilityChangeSet&) override {}
    void OnMode3D(const Mode3DChangeSet& set) override { Note<Mode3DChangeSet>(set); }
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet&) override {}
    void OnNetworkConfig(const NetworkConfigChangeSet& set) override { Note<NetworkConfigChangeSet>(set); }
    void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) override { Note<DeviceFilenamesChangeSet>(set); }
    void OnPreset(const PresetChangeSet& set) override { Note<PresetChangeSet>(set); }
    void OnPresetAvailability(const PresetAvailabilityChangeSet&) override {}
    // clang-format on

    std::vector<std::string> blocks_;
};

using Texts = std::vector<std::string>;

class MorquilTextProtocolClientTest : public testing::Test {
protected:
    void StartClient() {
        ASSERT_TRUE(client.SetServer("device.test", 9800));
        ASSERT_TRUE(client.Start());
        ASSERT_TRUE(link.AwaitIdle());
    }
    HRESULT QueueGain(int gain, bool recordSentText = true) {
        auto message = std::make_unique<VideoProcAmpMessage>();
        message->gain.Set(gain);
        message->recordSentText = recordSentText;
        return client.Queue(std::move(message));
    }
    template <class Message>
    HRESULT QueueNew() {
        return client.Queue(std::make_unique<Message>());
    }
    void DeviceSends(const std::string& bytes) {
        link.Push(bytes);
        ASSERT_TRUE(link.AwaitIdle());
    }

    Watchdog watchdog;
    FakeConnection link;
    BlockClient client{link};
};

TEST_F(MorquilTextProtocolClientTest, SendsAQueuedMessage) {
    StartClient();
    EXPECT_EQ(QueueGain(5), S_OK);
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sends(), Texts{"VIDEO PROC AMP:\nGain: 5\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, MergesMessagesOfOneTypeThatWaitForAnAcknowledgement) {
    StartClient();
    QueueNew<GenlockMessage>();
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(QueueGain(5), S_OK);
    EXPECT_EQ(QueueGain(6), S_OK);
    DeviceSends("ACK\n\n");
    EXPECT_EQ(link.Sends(), (Texts{"GENLOCK:\n\n", "VIDEO PROC AMP:\nGain: 6\n\n"}));
    DeviceSends("ACK\n\n");
    EXPECT_EQ(link.Sends().size(), 2U);
}

TEST_F(MorquilTextProtocolClientTest, SendsPendingMessagesInTheOrderOfTheTable) {
    StartClient();
    QueueNew<PresetMessage>();
    ASSERT_TRUE(link.AwaitIdle());
    QueueNew<AudioMessage>();
    QueueNew<VideoOutputMessage>();
    QueueNew<SupportedConversionsMessage>();
    for (int block = 0; block < 4; ++block) {
        DeviceSends("ACK\n\n");
    }
    EXPECT_EQ(link.Sends(), (Texts{"PRESET:\n\n", "SUPPORTED CONVERSIONS:\n\n", "VIDEO OUTPUT:\n\n", "AUDIO:\n\n"}));
}

TEST_F(MorquilTextProtocolClientTest, ARefusalReleasesTheNextBlockLikeAnAcknowledgement) {
    StartClient();
    QueueNew<GenlockMessage>();
    ASSERT_TRUE(link.AwaitIdle());
    QueueGain(5);
    DeviceSends("NACK\n\n");
    EXPECT_EQ(link.Sends(), (Texts{"GENLOCK:\n\n", "VIDEO PROC AMP:\nGain: 5\n\n"}));
}

TEST_F(MorquilTextProtocolClientTest, AnswersNeitherABlockNorAPing) {
    StartClient();
    DeviceSends("PING\n\nGENLOCK:\nLine offset: 5\n\nNO SUCH BLOCK:\nKey: value\n\nnonsense\n\n");
    EXPECT_EQ(link.Sent(), "");
    EXPECT_TRUE(link.IsOpen());
}

TEST_F(MorquilTextProtocolClientTest, NeverSendsAnAlignMessage) {
    StartClient();
    EXPECT_EQ(QueueNew<AlignMessage>(), S_OK);
    EXPECT_EQ(QueueNew<AlignMessage>(), S_OK);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("ACK\n\n");
    EXPECT_EQ(link.Sent(), "");
    QueueGain(5);
    EXPECT_TRUE(link.AwaitSent("VIDEO PROC AMP:\nGain: 5\n\n"));
}

TEST_F(MorquilTextProtocolClientTest, ReportsThatAMessageCouldNotBeAnnouncedButMergesWithoutAnnouncing) {
    StartClient();
    link.RefuseSignals();
    EXPECT_EQ(QueueGain(5), E_FAIL);
    EXPECT_EQ(QueueGain(6), S_OK);
    link.AllowSignals();
    DeviceSends("ACK\n\n");
    EXPECT_EQ(link.Sends(), Texts{"VIDEO PROC AMP:\nGain: 6\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, KeepsWhatIsQueuedForTheNextConnection) {
    EXPECT_EQ(QueueGain(5), S_OK);
    StartClient();
    EXPECT_EQ(link.Sends(), Texts{"VIDEO PROC AMP:\nGain: 5\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, RecognisesTheEchoOfItsOwnBlockOnce) {
    StartClient();
    QueueGain(5);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("VIDEO PROC AMP:\nGain: 5\n\nACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(client.Blocks(), (Texts{"echo VIDEO PROC AMP:\nGain: 5\n\n", "change VIDEO PROC AMP:\nGain: 5\n\n"}));
}

TEST_F(MorquilTextProtocolClientTest, TreatsAnUnrecordedBlockAsAChange) {
    StartClient();
    QueueGain(5, false);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(client.Blocks(), Texts{"change VIDEO PROC AMP:\nGain: 5\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, RecordsABlockWhenItIsSentAndNotBefore) {
    StartClient();
    QueueNew<GenlockMessage>();
    ASSERT_TRUE(link.AwaitIdle());
    QueueGain(5);
    DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(client.Blocks(), Texts{"change VIDEO PROC AMP:\nGain: 5\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, ForgetsTheBlocksThatWereSentBeforeAnEcho) {
    StartClient();
    QueueGain(1);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("ACK\n\n");
    QueueGain(2);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("ACK\n\n");
    QueueGain(3);
    ASSERT_TRUE(link.AwaitIdle());
    DeviceSends("VIDEO PROC AMP:\nGain: 2\n\nVIDEO PROC AMP:\nGain: 1\n\nVIDEO PROC AMP:\nGain: 3\n\n");
    EXPECT_EQ(client.Blocks(), (Texts{"echo VIDEO PROC AMP:\nGain: 2\n\n", "change VIDEO PROC AMP:\nGain: 1\n\n",
                                      "echo VIDEO PROC AMP:\nGain: 3\n\n"}));
}

TEST_F(MorquilTextProtocolClientTest, DropsTheRestOfAPieceOnceItStopsListening) {
    client.stopsListening = true;
    StartClient();
    DeviceSends("GENLOCK:\nLine offset: 5\n\nGENLOCK:\nLine offset: 6\n\n");
    DeviceSends("GENLOCK:\nLine offset: 7\n\n");
    EXPECT_EQ(client.Blocks(), Texts{"change GENLOCK:\nLine offset: 5\n\n"});
}

TEST_F(MorquilTextProtocolClientTest, PrintsNoDiagnosticsOfTheParser) {
    testing::internal::CaptureStdout();
    StartClient();
    DeviceSends("NO SUCH BLOCK:\nno colon\n\n");
    client.Stop();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "NO SUCH BLOCK:\nno colon\n\n");
}

}  // namespace
}  // namespace Morquil
