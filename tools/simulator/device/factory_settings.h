#pragma once

#include <string_view>

#include "protocol/blocks/audio.h"

namespace Morquil::Simulator {

/// The settings of a new device, as protocol text. Its identity and its audio settings are defined elsewhere.
std::string_view FactorySettings();

/// What can be set, as protocol text, as far as it is fixed; the rest is in offers.h.
std::string_view FactoryOffers();

/// The audio settings of a new device: every channel straight through.
AudioChangeSet FactoryAudio();

}  // namespace Morquil::Simulator
