#pragma once

#include <string_view>

#include "protocol/blocks/audio.h"

namespace Morquil::Simulator {

/// The settings of a new device, as protocol text. Who the device is and its audio stand elsewhere.
std::string_view FactorySettings();

/// What can be set, as protocol text, as far as it can be written down; the rest is in offers.h.
std::string_view FactoryOffers();

/// The audio settings of a new device: every channel straight through.
AudioChangeSet FactoryAudio();

}  // namespace Morquil::Simulator
