#pragma once

#include <cstdint>

#include "protocol/table/field.h"

namespace Morquil {

enum class KeyUse : std::uint8_t {
    Setting,   // a host sets it, and the device reports it
    Observed,  // the device detects it; what a host sends is ignored
    Command,   // carried out once when a host sends it; it has no value to read back
};

/// What a block's table says about a key besides how it is read and written. Reading a line uses none of this.
template <class Owner>
struct KeyFacts {
    KeyUse use = KeyUse::Setting;
    /// Whether a connection waits until the device has reported it.
    bool isNeeded = false;
    /// It is needed only while this flag is true; null when that depends on no flag.
    Field<bool> Owner::*neededWhile = nullptr;
    /// Whether a settings file holds it, given that it holds the block.
    bool isSaved = true;
};

}  // namespace Morquil
