// The table of properties, and what a command line may call them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "command/properties/value.h"
#include "properties/property.h"

namespace Morquil::Command {

using Properties::AllProperties;
using Properties::Limits;
using Properties::Offer;
using Properties::Property;
using Properties::Selection;

/// Finds the property `name`, ignoring case.
/// Throws: UsageFailure with the nearest name.
const Property& FindProperty(std::string_view name);

/// The properties that match `patterns` (see Properties::Matching), in the order of the patterns, each once; all
/// properties if there are no patterns.
/// Throws: UsageFailure for a pattern that matches nothing.
Selection SelectProperties(const std::vector<std::string>& patterns);

/// Whether `pattern` is the full name of a property.
bool IsExactName(std::string_view pattern);

}  // namespace Morquil::Command
