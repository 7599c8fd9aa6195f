#include "simulator/device/factory_device.h"

#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/sink.h"
#include "simulator/blocks/plain_values.h"
#include "simulator/device/factory_settings.h"
#include "simulator/offers/offers.h"

namespace Morquil::Simulator {

namespace {

/// Fills blocks from protocol text.
class BlockFiller final : public IMorquilTextProtocolSink {
public:
    explicit BlockFiller(DeviceBlocks& device) : device_(device) { parser_.SetSink(this); }

    void Fill(std::string_view text) { parser_.Feed(text.data(), text.size()); }

    void OnOtherBlock(std::size_t place, const void* changeSet) override { device_.Merge({place, changeSet}); }

    // The text is the program's own; a test checks that all of it can be parsed.
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override {}

private:
    DeviceBlocks& device_;
    MorquilTextProtocolParser parser_;
};

}  // namespace

DeviceBlocks FactoryDevice() {
    DeviceBlocks device;
    BlockFiller filler(device);
    filler.Fill(FactorySettings());
    filler.Fill(FactoryOffers());
    Merge(device.Of<AudioChangeSet>(), FactoryAudio());
    Merge(device.Of<SupportedConversionsChangeSet>(), OfferedConversions());
    Merge(device.Of<GenlockAvailabilityChangeSet>(), OfferedReferenceOffsets());
    Merge(device.Of<AncillaryDataAvailabilityChangeSet>(), OfferedDropFrameModes());
    Merge(device.Of<Mode3DAvailabilityChangeSet>(), Offered3DModes());
    Merge(device.Of<VideoAdvancedAvailabilityChangeSet>(), OfferedProcessingModes());
    ForEachBlock([&]<class Description>() { FillPlainly<Description>(device.Of<Description>()); });
    return device;
}

void Identify(DeviceBlocks& blocks, const DeviceIdentity& identity) {
    MorquilDeviceChangeSet& device = blocks.Of<MorquilDeviceChangeSet>();
    device.modelName.Set(identity.modelName);
    device.softwareVersion.Set(identity.softwareVersion);
    device.fpgaVersion.Set(identity.fpgaVersion);
    device.remoteLock.Set(identity.remoteLock);
    blocks.Of<ProtocolPreambleChangeSet>().version.Set(identity.protocolVersion);
    NetworkConfigChangeSet& network = blocks.Of<NetworkConfigChangeSet>();
    if (identity.friendlyName) {
        network.friendlyName.Set(*identity.friendlyName);
    }
    if (identity.ipAddress) {
        network.ipAddress.Set(*identity.ipAddress);
    }
}

}  // namespace Morquil::Simulator
