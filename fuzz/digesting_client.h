// The library's own client on a network that is a text: what arrives is handed to it, and what it sends can be read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/event_digest.h"
#include "transport/abstract_comms.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil::Fuzz {

/// Takes all that is sent; nothing ever arrives by itself.
class SentText final : public AbstractComms {
public:
    explicit SentText(std::string& sent) : sent_(sent) {}

    bool Initialise() override { return true; }
    bool Open(const std::string&, std::uint32_t, bool) override { return false; }
    bool WaitForConnect(std::int32_t) override { return false; }
    bool Attach(SocketHandle, bool) override { return false; }
    void Close() override {}
    std::uint32_t SetWaitMode(bool, std::uint32_t timeoutMs) override { return timeoutMs; }
    CommsEvent WaitForEvent() override { return CommsEvent::WaitFailed; }
    int Receive(char*, int, int) override { return commsFailed; }
    int Send(const char* data, int length, int) override {
        sent_.append(data, static_cast<std::size_t>(length));
        return length;
    }
    bool Signal(int) override { return true; }

private:
    std::string& sent_;
};

struct Sent {
    std::string sent;
};

/// Does with blocks what a derived class may: digests them, and stops listening in the middle.
class DigestingClient final : private Sent, public MorquilTextProtocolClient {
public:
    DigestingClient() : MorquilTextProtocolClient(std::make_unique<SentText>(sent)) {}
    ~DigestingClient() override { Stop(); }

    /// Digests from here on.
    void Begin(std::uint64_t noteAfter, bool leavesThen) {
        digest_ = EventDigest(noteAfter);
        leavesThen_ = leavesThen;
        LeaveIfDue();
    }
    void Arrive(std::string_view bytes) { OnDataReceived(bytes.data(), bytes.size()); }

    const EventDigest& Digest() const { return digest_; }
    const std::string& Sent() const { return sent; }
    /// Whether the answer `text` would pass as an echo.
    bool ExpectsEcho(const std::string& text) const { return IsSentText(text); }

    void OnPing() override {
        digest_.Ping();
        LeaveIfDue();
    }
    void OnAcknowledge(bool positive) override {
        digest_.Acknowledge(positive);
        MorquilTextProtocolClient::OnAcknowledge(positive);
        LeaveIfDue();
    }
    void OnUnknownBlock() override {
        digest_.UnknownBlock();
        LeaveIfDue();
    }
    void OnProtocolError(const char* text) override {
        digest_.ProtocolError(text);
        LeaveIfDue();
    }

    // clang-format off
    void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) override                               { Take<ProtocolPreambleChangeSet>(set); }
    void OnMorquilDevice(const MorquilDeviceChangeSet& set) override                                     { Take<MorquilDeviceChangeSet>(set); }
    void OnVideoInput(const VideoInputChangeSet& set) override                                           { Take<VideoInputChangeSet>(set); }
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) override                   { Take<VideoInputAvailabilityChangeSet>(set); }
    void OnVideoOutput(const VideoOutputChangeSet& set) override                                         { Take<VideoOutputChangeSet>(set); }
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) override                 { Take<VideoOutputAvailabilityChangeSet>(set); }
    void OnSupportedConversions(const SupportedConversionsChangeSet& set) override                       { Take<SupportedConversionsChangeSet>(set); }
    void OnVideoProcAmp(const VideoProcAmpChangeSet& set) override                                       { Take<VideoProcAmpChangeSet>(set); }
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) override               { Take<VideoProcAmpAvailabilityChangeSet>(set); }
    void OnVideoAdjust(const VideoAdjustChangeSet& set) override                                         { Take<VideoAdjustChangeSet>(set); }
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) override                 { Take<VideoAdjustAvailabilityChangeSet>(set); }
    void OnNoiseReduction(const NoiseReductionChangeSet& set) override                                   { Take<NoiseReductionChangeSet>(set); }
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) override           { Take<NoiseReductionAvailabilityChangeSet>(set); }
    void OnTestPattern(const TestPatternChangeSet& set) override                                         { Take<TestPatternChangeSet>(set); }
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) override                 { Take<TestPatternAvailabilityChangeSet>(set); }
    void OnVideoAdvanced(const VideoAdvancedChangeSet& set) override                                     { Take<VideoAdvancedChangeSet>(set); }
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) override             { Take<VideoAdvancedAvailabilityChangeSet>(set); }
    void OnAncillaryData(const AncillaryDataChangeSet& set) override                                     { Take<AncillaryDataChangeSet>(set); }
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) override             { Take<AncillaryDataAvailabilityChangeSet>(set); }
    void OnGenlock(const GenlockChangeSet& set) override                                                 { Take<GenlockChangeSet>(set); }
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) override                         { Take<GenlockAvailabilityChangeSet>(set); }
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) override                         { Take<VariableAspectRatioChangeSet>(set); }
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override { Take<VariableAspectRatioAvailabilityChangeSet>(set); }
    void OnAlign(const AlignChangeSet& set) override                                                     { Take<AlignChangeSet>(set); }
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override               { Take<AlignAvailabilityBlock>(set); }
    void OnAudio(const AudioChangeSet& set) override                                                     { Take<AudioChangeSet>(set); }
    void OnAudioAvailability(const AudioAvailabilityChangeSet& set) override                             { Take<AudioAvailabilityChangeSet>(set); }
    void OnMode3D(const Mode3DChangeSet& set) override                                                   { Take<Mode3DChangeSet>(set); }
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) override                           { Take<Mode3DAvailabilityChangeSet>(set); }
    void OnNetworkConfig(const NetworkConfigChangeSet& set) override                                     { Take<NetworkConfigChangeSet>(set); }
    void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) override                                 { Take<DeviceFilenamesChangeSet>(set); }
    void OnPreset(const PresetChangeSet& set) override                                                   { Take<PresetChangeSet>(set); }
    void OnPresetAvailability(const PresetAvailabilityChangeSet& set) override                           { Take<PresetAvailabilityChangeSet>(set); }
    // clang-format on

private:
    void OnConnectionChanged(bool) override {}

    template <class Description>
    void Take(const ChangeSetOf<Description>& set) {
        digest_.Block<Description>(set);
        LeaveIfDue();
    }
    void LeaveIfDue() {
        if (leavesThen_ && digest_.IsDue()) {
            StopListening();
        }
    }

    EventDigest digest_{0};
    bool leavesThen_ = false;
};

}  // namespace Morquil::Fuzz
