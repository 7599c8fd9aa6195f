#include "properties/json/property_json.h"

namespace Morquil::Properties {
namespace {

void AddUnlessEmpty(Json& row, const char* key, std::string_view text) {
    if (!text.empty()) {
        row[key] = text;
    }
}

void AddWords(Json& row, const ValueType& type) {
    if (type.kind == Kind::YesNo) {
        row["words"] = {"true", "false"};
    }
    for (const NamedValue& named : type.words) {
        row["words"].push_back(named.word);
    }
    AddUnlessEmpty(row, "enumeration", type.enumeration);
}

/// What the type alone allows. A device accepts less; `range` asks for that.
void AddLimits(Json& row, const ValueType& type) {
    if (type.kind == Kind::Number || type.kind == Kind::Bits) {
        row["min"] = type.smallest;
        row["max"] = type.largest;
    }
    if (type.mostBytes != 0) {
        row["mostBytes"] = type.mostBytes;
    }
}

/// What the device says about the values that it accepts now, and what changes that.
void AddOffer(Json& row, const Property& property) {
    if (property.offer != nullptr) {
        row["offer"] = property.type.kind == Kind::Word ? "words" : "range";
    }
    for (const std::string_view followed : property.offerFollows) {
        row["offerFollows"].push_back(followed);
    }
}

}  // namespace

Json ToJson(const ValueType& type, const std::optional<Value>& value) {
    if (!value) {
        return nullptr;
    }
    if (type.kind == Kind::Number || type.kind == Kind::Decimal || type.kind == Kind::YesNo) {
        return std::visit([](const auto& held) { return Json(held); }, *value);
    }
    return FormatValue(type, *value);
}

Json ToJson(const ValueType& type, const Offer& offer) {
    if (const Limits* const limits = std::get_if<Limits>(&offer)) {
        return {{"min", ToJson(type, limits->smallest)}, {"max", ToJson(type, limits->largest)}};
    }
    const auto* const offered = std::get_if<std::vector<std::int64_t>>(&offer);
    if (offered == nullptr) {
        return nullptr;
    }
    Json words = Json::array();
    for (const std::int64_t word : *offered) {
        words.push_back(FormatValue(type, word));
    }
    return words;
}

std::string TextOf(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

Json DescribeProperty(const Property& property) {
    Json row = {{"name", property.name},
                {"kind", NameOf(property.type.kind)},
                {"readable", property.IsReadable()},
                {"writable", property.IsWritable()},
                {"summary", property.summary},
                {"interface", property.interfaceName}};
    AddUnlessEmpty(row, "getter", property.getter);
    AddUnlessEmpty(row, "setter", property.setter);
    AddUnlessEmpty(row, "range", property.range);
    AddLimits(row, property.type);
    AddWords(row, property.type);
    row["access"] = NameOf(property.Access());
    row["propertySet"] = property.setName;
    AddUnlessEmpty(row, "unit", NameOf(property.type.unit));
    if (property.number != 0) {
        row["index"] = property.number - 1;
    }
    AddOffer(row, property);
    return row;
}

Json DescribeProperties() {
    Json rows = Json::array();
    for (const Property& property : AllProperties()) {
        rows.push_back(DescribeProperty(property));
    }
    return rows;
}

}  // namespace Morquil::Properties
