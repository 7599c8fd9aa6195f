#include "tests/system/gateway/json_schema.h"

#include <algorithm>
#include <regex>

namespace Morquil::Testing {
namespace {

bool HasType(const std::string& type, const Json& value) {
    return (type == "object" && value.is_object()) || (type == "array" && value.is_array()) ||
           (type == "string" && value.is_string()) || (type == "boolean" && value.is_boolean()) ||
           (type == "integer" && value.is_number_integer()) || (type == "number" && value.is_number()) ||
           (type == "null" && value.is_null());
}

bool HasOneOf(const Json& types, const Json& value) {
    if (types.is_string()) {
        return HasType(types.get<std::string>(), value);
    }
    return std::any_of(types.begin(), types.end(),
                       [&](const Json& type) { return HasType(type.get<std::string>(), value); });
}

std::string MembersFault(const Json& document, const Json& schema, const Json& value, const std::string& where) {
    for (const Json& name : schema.value("required", Json::array())) {
        if (!value.contains(name.get<std::string>())) {
            return where + ": lacks " + name.get<std::string>();
        }
    }
    const Json properties = schema.value("properties", Json::object());
    for (const auto& [name, member] : value.items()) {
        const Json rest = schema.value("additionalProperties", Json(true));
        if (!properties.contains(name) && rest == false) {
            return where + ": has an unknown member " + name;
        }
        const Json memberSchema = properties.contains(name) ? properties[name]
                                  : rest.is_object()        ? rest
                                                            : Json::object();
        if (std::string fault = ShapeFault(document, memberSchema, member, where + "/" + name); !fault.empty()) {
            return fault;
        }
    }
    return {};
}

}  // namespace

std::string ShapeFault(const Json& document, const Json& schema, const Json& value, const std::string& where) {
    if (schema.contains("$ref")) {
        const std::string reference = schema["$ref"].get<std::string>().substr(1);
        const Json::json_pointer pointer(reference);
        return document.contains(pointer) ? ShapeFault(document, document[pointer], value, where)
                                          : where + ": there is no " + reference;
    }
    for (const Json& part : schema.value("allOf", Json::array())) {
        if (std::string fault = ShapeFault(document, part, value, where); !fault.empty()) {
            return fault;
        }
    }
    if (schema.contains("type") && !HasOneOf(schema["type"], value)) {
        return where + ": " + value.dump() + " is no " + schema["type"].dump();
    }
    if (schema.contains("enum") &&
        std::find(schema["enum"].begin(), schema["enum"].end(), value) == schema["enum"].end()) {
        return where + ": " + value.dump() + " is none of " + schema["enum"].dump();
    }
    if (schema.contains("pattern") && value.is_string() &&
        !std::regex_search(value.get<std::string>(), std::regex(schema["pattern"].get<std::string>()))) {
        return where + ": " + value.dump() + " does not match " + schema["pattern"].dump();
    }
    if (value.is_number() && ((schema.contains("minimum") && value < schema["minimum"]) ||
                              (schema.contains("maximum") && value > schema["maximum"]))) {
        return where + ": " + value.dump() + " is outside its bounds";
    }
    if (value.is_array() && schema.contains("items")) {
        for (std::size_t at = 0; at < value.size(); ++at) {
            if (std::string fault = ShapeFault(document, schema["items"], value[at], where + "/" + std::to_string(at));
                !fault.empty()) {
                return fault;
            }
        }
    }
    return value.is_object() ? MembersFault(document, schema, value, where) : std::string();
}

}  // namespace Morquil::Testing
