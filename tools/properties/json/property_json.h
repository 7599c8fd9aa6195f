#pragma once

#include "command/properties/property.h"

namespace Morquil::Command {

/// A row of the property table for programs: its name, its interface and methods, and the values that it can hold.
Json DescribeProperty(const Property& property);

/// The whole table. Listing, completion and the description file are generated from it.
Json DescribeProperties();

}  // namespace Morquil::Command
