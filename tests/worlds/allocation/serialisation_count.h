// How often the library writes a message to text for its own use.
#pragma once

namespace Morquil::Testing {

/// How many messages have been written to a `MessageToString`, over all threads. Linking serialisation_count.cpp
/// replaces that class's own `SendFormatted`, because a program's own objects come before those of its libraries.
long SerialisationCount();

}  // namespace Morquil::Testing
