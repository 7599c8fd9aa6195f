// What the interface definitions say about the C++ layer's types and functions. The facts are generated.
#pragma once

#include <string_view>

#include "morquil.hpp"

namespace Morquil::Properties {

/// `name`: the enumeration of the interfaces that one of the layer stands for, "_MorquilAPIVideoMode".
template <class Enumeration>
struct EnumerationFacts;

/// `name`: the interface that a feature of the layer wraps, "IMorquilVideoProcAmp".
/// `propertySet`, `propertySetName`: the set that notifies of its changes, and the name of its constant.
template <class Feature>
struct InterfaceFacts;

/// `name`: the function, "VideoProcAmp::GetGain".
/// `raw`: the method of the interface that the function calls.
template <auto function>
struct MethodFacts;

}  // namespace Morquil::Properties

#include "properties/interface_facts.h"
