#include "simulator/device_state.h"

#include "protocol/morquil_text_protocol_parser.h"
#include "simulator/block_kinds.h"
#include "simulator/every_block_sink.h"
#include "simulator/factory_settings.h"
#include "simulator/offers.h"

namespace Morquil::Simulator {

namespace {

/// Fills a state from protocol text.
class StateFiller final : public EveryBlockSink<StateFiller> {
public:
    explicit StateFiller(DeviceState& state) : state_(state) { parser_.SetSink(this); }

    void Fill(std::string_view text) { parser_.Feed(text.data(), text.size()); }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        Merge(state_.Of<Description>(), set);
    }

    // The text is this program's own, and a test sees to it that all of it can be read.
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override {}

private:
    DeviceState& state_;
    MorquilTextProtocolParser parser_;
};

}  // namespace

DeviceState::DeviceState(const DeviceIdentity& identity) {
    StateFiller filler(*this);
    filler.Fill(FactorySettings());
    filler.Fill(FactoryOffers());
    Merge(Of<AudioChangeSet>(), FactoryAudio());
    Merge(Of<SupportedConversionsChangeSet>(), OfferedConversions());
    Merge(Of<GenlockAvailabilityChangeSet>(), OfferedReferenceOffsets());
    Merge(Of<AncillaryDataAvailabilityChangeSet>(), OfferedDropFrameModes());
    Merge(Of<Mode3DAvailabilityChangeSet>(), Offered3DModes());
    Merge(Of<VideoAdvancedAvailabilityChangeSet>(), OfferedProcessingModes());
    Identify(identity);
    std::apply([](auto&... stored) { ((stored.factory = stored.present), ...); }, blocks_);
}

void DeviceState::Identify(const DeviceIdentity& identity) {
    MorquilDeviceChangeSet& device = Of<MorquilDeviceChangeSet>();
    device.modelName.Set(identity.modelName);
    device.softwareVersion.Set(identity.softwareVersion);
    device.fpgaVersion.Set(identity.fpgaVersion);
    device.remoteLock.Set(identity.remoteLock);
    Of<ProtocolPreambleChangeSet>().version.Set(identity.protocolVersion);
}

std::string DeviceState::Greeting() {
    std::string text = DeviceText<ProtocolPreambleChangeSet>(Of<ProtocolPreambleChangeSet>());
    ForEachBlock<BlockKind::Settings>([&](auto entry) {
        using Description = typename decltype(entry)::Description;
        text += DeviceText<Description>(Of<Description>());
    });
    return text;
}

}  // namespace Morquil::Simulator
