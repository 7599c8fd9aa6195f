#include "command/properties/description.h"

namespace Morquil::Command {
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

}  // namespace

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
    return row;
}

Json DescribeProperties() {
    Json rows = Json::array();
    for (const Property& property : AllProperties()) {
        rows.push_back(DescribeProperty(property));
    }
    return rows;
}

}  // namespace Morquil::Command
