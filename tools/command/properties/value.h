// Values of properties, under the names that the commands use.
#pragma once

#include "properties/json/property_json.h"
#include "properties/value.h"

namespace Morquil::Command {

using Properties::Json;
using Properties::Kind;
using Properties::NamedValue;
using Properties::Value;
using Properties::ValueType;

}  // namespace Morquil::Command
