#include "gateway/api/open_api.h"
#include "properties/property.h"

namespace Morquil::Gateway {
namespace {

using Properties::Kind;
using Properties::Property;

/// The shapes that do not follow from the table of properties.
constexpr std::string_view fixedSchemas = R"json({
"Time": {"type": "string", "format": "date-time"},
"Name": {"type": "string", "pattern": "^[a-z0-9][a-z0-9-]{0,62}$"},
"Offer": {"description": "What may be set now: a range, or words; null if the device has not reported it",
    "type": ["object", "array", "null"]},
"AnyValue": {"description": "As the property's schema in Values says; null while it is not known or not live",
    "type": ["number", "string", "boolean", "null"]},
"Problem": {"type": "object", "required": ["type", "title", "status", "detail", "instance"], "properties": {
    "type": {"type": "string"}, "title": {"type": "string"}, "status": {"type": "integer"},
    "detail": {"type": "string", "description": "What happened, in a sentence"},
    "instance": {"type": "string", "description": "The X-Request-Id"},
    "outcome": {"type": "string"}, "suggestion": {"type": "string"}, "offer": {"$ref": "#/components/schemas/Offer"},
    "nearest": {"type": "array", "items": {"$ref": "#/components/schemas/AnyValue"}}}},
"Scope": {"type": "object", "required": ["devices", "properties"], "properties": {
    "devices": {"type": "string"}, "properties": {"type": "string"}}},
"Me": {"type": "object", "required": ["user", "role", "scopes", "authentication"], "properties": {
    "user": {"type": ["string", "null"]},
    "role": {"enum": ["viewer", "operator", "engineer", "admin"]},
    "scopes": {"type": "array", "items": {"$ref": "#/components/schemas/Scope"}},
    "authentication": {"enum": ["open", "password", "token"]}}},
"Property": {"type": "object", "required": ["name", "kind", "access", "summary"], "properties": {
    "name": {"type": "string"}, "kind": {"type": "string"}, "summary": {"type": "string"},
    "access": {"enum": ["read", "read/write", "command"]}}},
"PropertyList": {"type": "array", "items": {"$ref": "#/components/schemas/Property"}},
"Link": {"type": "object", "required": ["state", "sentence", "since", "lastReport", "age"], "properties": {
    "state": {"enum": ["disabled", "connecting", "connected", "lost", "unresolved", "unreachable", "refused",
                       "no-device", "wrong-protocol", "remote-locked"]},
    "sentence": {"type": "string"}, "since": {"$ref": "#/components/schemas/Time"},
    "lastReport": {"type": ["string", "null"]},
    "age": {"type": ["number", "null"], "description": "Seconds since the device sent anything"}}},
"Summary": {"type": "object",
    "required": ["input", "output", "signalPresent", "referenceLocked", "panelLocked", "remoteLocked"], "properties": {
    "input": {"type": ["string", "null"]}, "output": {"type": ["string", "null"]},
    "signalPresent": {"type": ["boolean", "null"]}, "referenceLocked": {"type": ["boolean", "null"]},
    "panelLocked": {"type": ["boolean", "null"]}, "remoteLocked": {"type": ["boolean", "null"]}}},
"DeviceEntry": {"type": "object", "required": ["name", "label", "address", "room", "tags", "enabled"], "properties": {
    "name": {"$ref": "#/components/schemas/Name"}, "label": {"type": "string"}, "address": {"type": "string"},
    "room": {"type": "string"}, "tags": {"type": "array", "items": {"type": "string"}},
    "enabled": {"type": "boolean"}}},
"DeviceEdit": {"type": "object", "properties": {
    "name": {"$ref": "#/components/schemas/Name"}, "label": {"type": "string"}, "address": {"type": "string"},
    "room": {"type": "string"}, "tags": {"type": "array", "items": {"type": "string"}},
    "enabled": {"type": "boolean"}}},
"Device": {"allOf": [{"$ref": "#/components/schemas/DeviceEntry"}, {"type": "object",
    "required": ["revision", "model", "link", "summary", "alarms", "lastChange"], "properties": {
    "revision": {"type": "integer"}, "model": {"type": ["string", "null"]},
    "link": {"$ref": "#/components/schemas/Link"}, "summary": {"$ref": "#/components/schemas/Summary"},
    "alarms": {"type": "array", "items": {"type": "string"}}, "lastChange": {"type": ["object", "null"]}}}]},
"DeviceList": {"type": "object", "required": ["revision", "devices"], "properties": {
    "revision": {"type": "integer"}, "devices": {"type": "array", "items": {"$ref": "#/components/schemas/Device"}}}},
"State": {"type": "object", "required": ["value", "live", "age", "offer", "access", "changed", "origin", "who"],
    "properties": {
    "value": {"$ref": "#/components/schemas/AnyValue"}, "live": {"type": "boolean"},
    "last": {"$ref": "#/components/schemas/AnyValue"}, "age": {"type": ["number", "null"]},
    "offer": {"$ref": "#/components/schemas/Offer"}, "access": {"enum": ["read", "read/write", "command"]},
    "changed": {"type": ["string", "null"]}, "origin": {"type": ["string", "null"]},
    "who": {"type": ["string", "null"]}}},
"PropertyState": {"allOf": [{"$ref": "#/components/schemas/State"},
    {"type": "object", "required": ["property"], "properties": {"property": {"type": "string"}}}]},
"States": {"type": "object", "additionalProperties": {"$ref": "#/components/schemas/State"}},
"DeviceWithStates": {"allOf": [{"$ref": "#/components/schemas/Device"},
    {"type": "object", "required": ["properties"], "properties": {
        "properties": {"$ref": "#/components/schemas/States"}}}]},
"Address": {"type": "object", "required": ["address"], "properties": {"address": {"type": "string"}}},
"Diagnosis": {"type": "object", "required": ["state", "sentence"], "properties": {
    "state": {"type": "string"}, "sentence": {"type": "string"}}},
"SetValue": {"type": "object", "properties": {"value": {"$ref": "#/components/schemas/AnyValue"}}},
"SetValues": {"type": "object", "required": ["values"], "properties": {
    "values": {"$ref": "#/components/schemas/Values"}}},
"SetResult": {"type": "object", "required": ["outcome", "value"], "properties": {
    "outcome": {"enum": ["confirmed", "queued"]}, "value": {"$ref": "#/components/schemas/AnyValue"},
    "old": {"$ref": "#/components/schemas/AnyValue"}, "revision": {"type": "integer"}}},
"SetResults": {"type": "object", "required": ["results"], "properties": {
    "results": {"type": "object", "additionalProperties": {"type": "object", "required": ["outcome", "status"],
        "properties": {"outcome": {"type": "string"}, "status": {"type": "integer"}}}}}},
"SignIn": {"type": "object", "required": ["user", "password"], "properties": {
    "user": {"type": "string"}, "password": {"type": "string"}}},
"User": {"type": "object", "required": ["name", "role", "scopes"], "properties": {
    "name": {"type": "string"}, "role": {"enum": ["viewer", "operator", "engineer", "admin"]},
    "scopes": {"type": "array", "items": {"$ref": "#/components/schemas/Scope"}}}},
"UserList": {"type": "object", "required": ["users"], "properties": {
    "users": {"type": "array", "items": {"$ref": "#/components/schemas/User"}}}},
"UserEdit": {"type": "object", "properties": {
    "name": {"type": "string"}, "role": {"enum": ["viewer", "operator", "engineer", "admin"]},
    "scopes": {"type": "array", "items": {"$ref": "#/components/schemas/Scope"}},
    "password": {"type": "string", "writeOnly": true}}},
"Token": {"type": "object", "required": ["id", "name", "role", "scopes", "created", "expires"], "properties": {
    "id": {"type": "string"}, "name": {"type": "string"},
    "role": {"enum": ["viewer", "operator", "engineer", "admin"]},
    "scopes": {"type": "array", "items": {"$ref": "#/components/schemas/Scope"}},
    "created": {"$ref": "#/components/schemas/Time"}, "expires": {"type": ["string", "null"]}}},
"TokenList": {"type": "object", "required": ["tokens"], "properties": {
    "tokens": {"type": "array", "items": {"$ref": "#/components/schemas/Token"}}}},
"TokenEdit": {"type": "object", "required": ["name", "role"], "properties": {
    "name": {"type": "string"}, "role": {"enum": ["viewer", "operator", "engineer", "admin"]},
    "scopes": {"type": "array", "items": {"$ref": "#/components/schemas/Scope"}},
    "expires": {"type": ["string", "null"], "format": "date-time"}}},
"NewToken": {"type": "object", "required": ["id", "token"], "properties": {
    "id": {"type": "string"}, "token": {"type": "string", "description": "Shown this once"}}},
"Rows": {"type": "object", "required": ["rows", "next"], "properties": {
    "rows": {"type": "array", "items": {"type": "object", "required": ["id", "time", "device", "property", "who"]}},
    "next": {"type": ["string", "null"]}}},
"Step": {"type": "object", "required": ["device", "property", "value"], "properties": {
    "device": {"type": "string"}, "property": {"type": "string"}, "value": {"$ref": "#/components/schemas/AnyValue"}}},
"Steps": {"type": "object", "required": ["steps"], "properties": {
    "steps": {"type": "array", "items": {"$ref": "#/components/schemas/Step"}}}},
"Capture": {"type": "object", "required": ["devices", "properties"], "properties": {
    "devices": {"type": "array", "items": {"type": "string"}},
    "properties": {"type": "array", "items": {"type": "string"}}}},
"Salvo": {"type": "object", "required": ["name", "steps"], "properties": {
    "name": {"type": "string"}, "label": {"type": "string"},
    "steps": {"type": "array", "items": {"$ref": "#/components/schemas/Step"}},
    "onFailure": {"enum": ["stop", "continue", "roll-back"]}}},
"SalvoList": {"type": "object", "required": ["salvos"], "properties": {
    "salvos": {"type": "array", "items": {"$ref": "#/components/schemas/Salvo"}}}},
"RunSalvo": {"type": "object", "properties": {
    "dryRun": {"type": "boolean"}, "onFailure": {"enum": ["stop", "continue", "roll-back"]}}},
"Run": {"type": "object", "required": ["id", "salvo", "state", "steps"], "properties": {
    "id": {"type": "string"}, "salvo": {"type": "string"},
    "state": {"enum": ["running", "done", "failed", "rolled-back", "interrupted"]},
    "steps": {"type": "array", "items": {"type": "object", "required": ["device", "property", "outcome"]}}}},
"StartedRun": {"type": "object", "required": ["run"], "properties": {"run": {"$ref": "#/components/schemas/Run"}}},
"Anything": {"type": ["object", "array"]}
})json";

Json TypeOf(const Property& property) {
    switch (property.type.kind) {
        case Kind::Number:
            return {{"type", "integer"}, {"minimum", property.type.smallest}, {"maximum", property.type.largest}};
        case Kind::Decimal:
            return {{"type", "number"}};
        case Kind::YesNo:
            return {{"type", "boolean"}};
        case Kind::Word: {
            Json words = Json::array();
            for (const Properties::NamedValue& named : property.type.words) {
                words.push_back(named.word);
            }
            return {{"enum", words}};
        }
        case Kind::Nothing:
            return {{"type", {"string", "null"}}};
        case Kind::Bits:
        case Kind::Text:
        case Kind::Timecode:
        case Kind::Address:
            break;
    }
    return {{"type", "string"}};
}

Json SchemaOf(const Property& property) {
    Json schema = TypeOf(property);
    schema["description"] = property.summary;
    if (property.Access() == Properties::Access::Read) {
        schema["readOnly"] = true;
    }
    if (property.IsCommand()) {
        schema["writeOnly"] = true;
    }
    return schema;
}

}  // namespace

Json OpenApiSchemas() {
    Json schemas = Json::parse(fixedSchemas);
    Json values = Json::object();
    for (const Property& property : Properties::AllProperties()) {
        values[property.name] = SchemaOf(property);
    }
    schemas["Values"] = {{"type", "object"}, {"additionalProperties", false}, {"properties", values}};
    return schemas;
}

}  // namespace Morquil::Gateway
