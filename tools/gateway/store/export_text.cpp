#include "gateway/store/export_text.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <vector>

namespace Morquil::Gateway {
namespace {

/// A column: its name, its text, and whether that is JSON already.
struct Field {
    const char* name;
    std::string text;
    bool isJson = false;
};

std::vector<Field> FieldsOf(const Change& change) {
    return {{"id", std::to_string(change.id), true},
            {"time", FormatTime(change.time)},
            {"device", change.device},
            {"property", change.property},
            {"old", change.oldValue, true},
            {"new", change.newValue, true},
            {"origin", change.origin},
            {"who", change.who}};
}

std::vector<Field> FieldsOf(const Attempt& attempt) {
    return {{"id", std::to_string(attempt.id), true},
            {"time", FormatTime(attempt.time)},
            {"who", attempt.who},
            {"address", attempt.address},
            {"device", attempt.device},
            {"property", attempt.property},
            {"value", attempt.value, true},
            {"outcome", attempt.outcome},
            {"status", std::to_string(attempt.status), true},
            {"requestId", attempt.requestId},
            {"hash", attempt.hash}};
}

// A text without the quotes of JSON: people read "1080i50", not "\"1080i50\"".
std::string Plain(const Field& field) {
    if (!field.isJson || field.text.empty() || field.text.front() != '"') {
        return field.isJson && field.text == "null" ? std::string() : field.text;
    }
    const nlohmann::json value = nlohmann::json::parse(field.text, nullptr, false);
    return value.is_string() ? value.get<std::string>() : field.text;
}

template <class Text>
std::string Joined(const std::vector<Field>& fields, Text text) {
    std::string line;
    for (const Field& field : fields) {
        line += (line.empty() ? "" : ",") + text(field);
    }
    return line;
}

std::string CsvLine(const std::vector<Field>& fields) {
    return Joined(fields, [](const Field& field) { return CsvField(Plain(field)); }) + "\r\n";
}

std::string CsvNames(const std::vector<Field>& fields) {
    return Joined(fields, [](const Field& field) { return std::string(field.name); }) + "\r\n";
}

std::string JsonLine(const std::vector<Field>& fields) {
    return "{" +
           Joined(fields,
                  [](const Field& field) {
                      return JsonText(field.name) + ":" + (field.isJson ? field.text : JsonText(field.text));
                  }) +
           "}\n";
}

bool IsNumber(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::string CsvField(std::string_view text) {
    const bool isFormula = !text.empty() && std::string_view("=+-@\t\r\n").find(text.front()) != text.npos;
    std::string field = isFormula && !IsNumber(text) ? "'" : "";
    field += text;
    if (field.find_first_of(",\"\r\n") == field.npos) {
        return field;
    }
    std::string quoted = "\"";
    for (const char letter : field) {
        quoted.append(letter == '"' ? 2 : 1, letter);
    }
    return quoted + "\"";
}

std::string JsonText(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string CsvHeader(const Change*) {
    return CsvNames(FieldsOf(Change{}));
}

std::string CsvHeader(const Attempt*) {
    return CsvNames(FieldsOf(Attempt{}));
}

std::string ToCsv(const Change& change) {
    return CsvLine(FieldsOf(change));
}

std::string ToCsv(const Attempt& attempt) {
    return CsvLine(FieldsOf(attempt));
}

std::string ToJsonLine(const Change& change) {
    return JsonLine(FieldsOf(change));
}

std::string ToJsonLine(const Attempt& attempt) {
    return JsonLine(FieldsOf(attempt));
}

}  // namespace Morquil::Gateway
