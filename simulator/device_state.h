#pragma once

#include <string>
#include <string_view>
#include <tuple>

#include "protocol/block_table.h"
#include "simulator/commands.h"
#include "simulator/wire_text.h"

namespace Morquil::Simulator {

/// What a device says about itself. Everything else about it is in its factory settings.
struct DeviceIdentity {
    std::string modelName = "Morquil Simulator";
    std::uint32_t softwareVersion = 0x20417;
    std::uint32_t fpgaVersion = 0x1c;
    ProtocolVersion protocolVersion{2, 22};
    bool remoteLock = false;
};

/// Every block of a device with its present values, settings and offers alike.
class DeviceState {
public:
    /// A device as it leaves the factory.
    explicit DeviceState(const DeviceIdentity& identity);

    /// The values of one block.
    template <class Description>
    ChangeSetOf<Description>& Of() {
        return std::get<Stored<Description>>(blocks_).present;
    }

    /// Takes over the fields of `received` and carries out its commands.
    /// Returns:   what all hosts are told: a block of exactly the received fields, and behind it a block of what the
    ///            commands changed, if there were any. Nothing when nothing was received.
    template <class Description>
    std::string Apply(const ChangeSetOf<Description>& received) {
        using Set = ChangeSetOf<Description>;
        if (HoldsNothing<Description>(received)) {
            return {};
        }
        Stored<Description>& stored = std::get<Stored<Description>>(blocks_);
        Set changed = Consequences(received, stored.factory);
        const bool hasConsequences = !HoldsNothing<Description>(changed);
        Merge(changed, received);
        ForgetCommands(changed);
        Merge(stored.present, changed);
        return DeviceText<Description>(received) + (hasConsequences ? DeviceText<Description>(changed) : std::string());
    }

    /// What the device tells a host that has just connected: who it is, and all its settings.
    std::string Greeting();

private:
    template <class Description>
    struct Stored {
        ChangeSetOf<Description> present;
        ChangeSetOf<Description> factory;
    };
    template <class Table>
    struct AllStored;
    template <class... Entries>
    struct AllStored<std::tuple<Entries...>> {
        using Type = std::tuple<Stored<typename Entries::Description>...>;
    };

    void Identify(const DeviceIdentity& identity);

    AllStored<BlockTable>::Type blocks_;
};

}  // namespace Morquil::Simulator
