// A client without a connection: the test takes the queued messages out.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "transport/abstract_comms.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil::Testing {

/// Counts how often the client asks to send.
class CountingComms final : public AbstractComms {
public:
    explicit CountingComms(std::atomic<int>& sendRequests) : sendRequests_(sendRequests) {}

    bool Initialise() override { return true; }
    bool Open(const std::string&, std::uint32_t, bool) override { return false; }
    bool WaitForConnect(std::int32_t) override { return false; }
    bool Attach(SocketHandle, bool) override { return true; }
    void Close() override {}
    std::uint32_t SetWaitMode(bool, std::uint32_t timeoutMs) override { return timeoutMs; }
    CommsEvent WaitForEvent() override { return CommsEvent::WaitFailed; }
    int Receive(char*, int, int) override { return commsFailed; }
    int Send(const char*, int, int) override { return commsFailed; }
    bool Signal(int which) override {
        sendRequests_ += which == signalSend ? 1 : 0;
        return true;
    }

private:
    std::atomic<int>& sendRequests_;
};

struct SendRequestCount {
    std::atomic<int> sendRequests = 0;
};

class QueueClient final : private SendRequestCount, public MorquilTextProtocolClient {
public:
    QueueClient() : MorquilTextProtocolClient(std::make_unique<CountingComms>(sendRequests)) {}
    ~QueueClient() override { Stop(); }

    /// The next message in sending order, or none.
    std::unique_ptr<TextProtocolMessageBase> Take() { return TakeNextMessage(); }
    /// The texts of all messages that can be sent, in sending order.
    std::vector<std::string> TakeTexts() {
        std::vector<std::string> texts;
        for (auto message = Take(); message != nullptr; message = Take()) {
            texts.push_back(TextOf(*message));
        }
        return texts;
    }
    /// Messages that occupied their own slot so far, including those that are never sent.
    int SlotsTaken() const { return sendRequests; }
    /// Whether the answer to any message taken out would count as an echo.
    bool ExpectsEcho() const { return AwaitsEcho(); }

private:
    void OnConnectionChanged(bool) override {}

    // clang-format off
    void OnProtocolPreamble(const ProtocolPreambleChangeSet&) override {}
    void OnMorquilDevice(const MorquilDeviceChangeSet&) override {}
    void OnVideoInput(const VideoInputChangeSet&) override {}
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet&) override {}
    void OnVideoOutput(const VideoOutputChangeSet&) override {}
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet&) override {}
    void OnSupportedConversions(const SupportedConversionsChangeSet&) override {}
    void OnVideoProcAmp(const VideoProcAmpChangeSet&) override {}
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet&) override {}
    void OnVideoAdjust(const VideoAdjustChangeSet&) override {}
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet&) override {}
    void OnNoiseReduction(const NoiseReductionChangeSet&) override {}
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet&) override {}
    void OnTestPattern(const TestPatternChangeSet&) override {}
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet&) override {}
    void OnVideoAdvanced(const VideoAdvancedChangeSet&) override {}
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet&) override {}
    void OnAncillaryData(const AncillaryDataChangeSet&) override {}
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet&) override {}
    void OnGenlock(const GenlockChangeSet&) override {}
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet&) override {}
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet&) override {}
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet&) override {}
    void OnAlign(const AlignChangeSet&) override {}
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet&) override {}
    void OnAudio(const AudioChangeSet&) override {}
    void OnAudioAvailability(const AudioAvailabilityChangeSet&) override {}
    void OnMode3D(const Mode3DChangeSet&) override {}
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet&) override {}
    void OnNetworkConfig(const NetworkConfigChangeSet&) override {}
    void OnDeviceFilenames(const DeviceFilenamesChangeSet&) override {}
    void OnPreset(const PresetChangeSet&) override {}
    void OnPresetAvailability(const PresetAvailabilityChangeSet&) override {}
    // clang-format on
};

}  // namespace Morquil::Testing
