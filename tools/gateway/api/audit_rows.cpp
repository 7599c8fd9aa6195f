#include "gateway/api/audit_rows.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t deviceSegment = 3;    // /api/v1/devices/{name}
constexpr std::size_t propertySegment = 5;  // /api/v1/devices/{name}/properties/{property}
constexpr std::size_t longestValue = 4096;
constexpr std::size_t longestBody = 65536;

// Null for what is no JSON, or too long to be looked at.
Json Parsed(const std::string& text) {
    Json json = text.size() <= longestBody ? Json::parse(text, nullptr, false) : Json();
    return json.is_discarded() ? Json() : json;
}

Json MemberOf(const Json& json, const std::string& name) {
    return json.is_object() && json.contains(name) ? json[name] : Json();
}

std::string TextOf(const Json& json, const char* otherwise) {
    return json.is_string() ? json.get<std::string>() : otherwise;
}

std::string ShortJson(const Json& json) {
    const std::string text = DumpJson(json);
    return text.size() <= longestValue ? text : "\"(too long)\"";
}

bool IsOfDevice(const Request& request, std::size_t segments) {
    return request.segments.size() >= segments && request.segments[2] == "devices";
}

/// {outcome} of a result, the kind of a problem, or what the status means.
std::string OutcomeOf(const Json& answer, int status) {
    const Json outcome = MemberOf(answer, "outcome");
    if (outcome.is_string()) {
        return outcome;
    }
    constexpr std::string_view problems = "/problems/";
    const std::string type = TextOf(MemberOf(answer, "type"), "");
    if (type.starts_with(problems)) {
        return type.substr(problems.size());
    }
    return status < 300 ? "done" : "refused";
}

Attempt Begin(const Request& request, int status, Time now) {
    return {.time = now,
            .who = request.identity.name,
            .address = request.address,
            .device = IsOfDevice(request, deviceSegment + 1) ? request.segments[deviceSegment] : "",
            .property = IsOfDevice(request, propertySegment + 1) ? request.segments[propertySegment] : "",
            .status = status,
            .requestId = request.id};
}

Json WithoutSecrets(Json body) {
    if (body.is_object() && body.contains("password")) {
        body["password"] = "(not recorded)";
    }
    return body;
}

Attempt RowOf(const Request& request, const Json& body, const Json& answer, int status, Time now) {
    Attempt row = Begin(request, status, now);
    row.outcome = OutcomeOf(answer, status);
    row.value = ShortJson(row.property.empty()
                              ? Json{{"request", request.method + " " + request.path}, {"body", WithoutSecrets(body)}}
                              : MemberOf(body, "value"));
    return row;
}

// Of {"values": {NAME: ...}}, with the results if it came as far as that.
std::vector<Attempt> RowsOfBatch(const Request& request, const Json& values, const Json& answer, int status, Time now) {
    const Json results = MemberOf(answer, "results");
    std::vector<Attempt> rows;
    for (const auto& [property, value] : values.items()) {
        const Json result = MemberOf(results, property);
        const Json ownStatus = MemberOf(result, "status");
        Attempt row = Begin(request, ownStatus.is_number_integer() ? ownStatus.get<int>() : status, now);
        row.property = property;
        row.value = ShortJson(value);
        row.outcome = OutcomeOf(result.is_object() ? result : answer, row.status);
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace

std::vector<Attempt> AuditRows(const Request& request, const Response& response, Time now) {
    if (request.method == "GET" || request.method == "HEAD" || request.method == "OPTIONS") {
        return {};
    }
    const Json body = Parsed(request.body);
    const Json answer = Parsed(response.body);
    const Json values = MemberOf(body, "values");
    const bool isBatch = request.method == "PATCH" && IsOfDevice(request, propertySegment) && values.is_object();
    if (isBatch && !values.empty()) {
        return RowsOfBatch(request, values, answer, response.status, now);
    }
    return {RowOf(request, body, answer, response.status, now)};
}

}  // namespace Morquil::Gateway
