// Properties and their values as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "properties/property.h"

namespace Morquil::Properties {

/// Keeps members in the order in which they are written.
using Json = nlohmann::ordered_json;

/// Numbers, booleans and texts become JSON values; everything else is formatted by `FormatValue`. Null for a value that
/// the device has not reported.
Json ToJson(const ValueType& type, const std::optional<Value>& value);

/// {"min": -60, "max": 60}, or a list of words; null if the device has not reported it.
Json ToJson(const ValueType& type, const Offer& offer);

/// The text of a value in a JSON document, as people write it: what `ToJson` makes, and "1" for 1.
std::string TextOf(const Json& value);

/// A row of the table for other programs and languages: its names, its methods, and the values that it can hold.
Json DescribeProperty(const Property& property);

/// The whole table. Listing and the description file are generated from it.
Json DescribeProperties();

}  // namespace Morquil::Properties
