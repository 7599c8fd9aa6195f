#pragma once

#include <cstddef>

namespace Morquil {

enum class BlockRole {
    Announcement,  // the device sends it once, hosts never do
    Settings,      // the device reports it; a host changes fields by sending them
    Offers,        // what settings can be set to; the device reports it when a host asks with an empty block
};

/// The facts about a block besides its keys.
struct BlockFacts {
    BlockRole role;
    /// The place of its messages in the order of sending, counted from 1; 0 when it has no messages.
    std::size_t slot = 0;
    /// Whether messages are sent from the slot; otherwise they stay there forever.
    bool isSent = false;
    /// Its place in a settings file, counted from 1; 0 when no file holds it.
    std::size_t savedPlace = 0;
    /// Whether loading a settings file sends it to the device.
    bool isPlayedBack = false;

    // Used by the table.
    consteval BlockFacts Slot(std::size_t place) const { return {role, place, true, savedPlace, isPlayedBack}; }
    consteval BlockFacts NeverSent() const { return {role, slot, false, savedPlace, isPlayedBack}; }
    consteval BlockFacts Saved(std::size_t place) const { return {role, slot, isSent, place, true}; }
    consteval BlockFacts NotPlayedBack() const { return {role, slot, isSent, savedPlace, false}; }
};

consteval BlockFacts AnnouncedBlock() {
    return {BlockRole::Announcement};
}
consteval BlockFacts SettingsBlock() {
    return {BlockRole::Settings};
}
/// A connection requests all offers that are ever sent as soon as the device has identified itself.
consteval BlockFacts OffersBlock() {
    return {BlockRole::Offers};
}

}  // namespace Morquil
