#pragma once

#include "command/properties/property.h"

namespace Morquil::Command {

/// A row of the table of properties as programs read it: its name, its interface and methods, what it can hold.
Json DescribeProperty(const Property& property);

/// All of the table. Listing, completion and the description file are made of it.
Json DescribeProperties();

}  // namespace Morquil::Command
