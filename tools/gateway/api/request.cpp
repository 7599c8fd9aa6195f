#include "gateway/api/request.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

int DigitOf(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

/// Decodes %XX, and in a query + as a space. Refuses control characters: nothing here needs them.
std::optional<std::string> Decode(std::string_view text, bool isQuery) {
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char c = text[at];
        if (c == '%') {
            const int high = at + 2 < text.size() ? DigitOf(text[at + 1]) : -1;
            const int low = at + 2 < text.size() ? DigitOf(text[at + 2]) : -1;
            if (high < 0 || low < 0) {
                return std::nullopt;
            }
            c = static_cast<char>(high * 16 + low);
            at += 2;
        } else if (c == '+' && isQuery) {
            c = ' ';
        }
        if (static_cast<unsigned char>(c) < ' ') {
            return std::nullopt;
        }
        decoded += c;
    }
    return decoded;
}

template <class Use>
bool EachPart(std::string_view text, char separator, Use use) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end != 0 && !use(text.substr(0, end))) {
            return false;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return true;
}

bool AddQuery(std::string_view part, Request& request) {
    const std::size_t equals = std::min(part.find('='), part.size());
    auto name = Decode(part.substr(0, equals), true);
    auto value = Decode(part.substr(std::min(equals + 1, part.size())), true);
    if (!name || !value) {
        return false;
    }
    request.query.emplace_back(*std::move(name), *std::move(value));
    return true;
}

}  // namespace

std::string_view Request::Header(std::string_view lowerCaseName) const {
    const auto found =
        std::find_if(headers.begin(), headers.end(), [&](const auto& header) { return header.first == lowerCaseName; });
    return found == headers.end() ? std::string_view() : found->second;
}

std::optional<std::string_view> Request::Query(std::string_view name) const {
    const auto found = std::find_if(query.begin(), query.end(), [&](const auto& pair) { return pair.first == name; });
    return found == query.end() ? std::nullopt : std::optional<std::string_view>(found->second);
}

bool ReadTarget(Request& request) {
    const std::string_view target = request.target;
    if (!target.starts_with('/')) {
        return false;
    }
    const std::size_t question = std::min(target.find('?'), target.size());
    const std::string_view path = target.substr(0, question);
    const std::string_view query = target.substr(std::min(question + 1, target.size()));
    const auto decoded = Decode(path, false);
    if (!decoded) {
        return false;
    }
    request.path = *decoded;
    return EachPart(path, '/',
                    [&](std::string_view part) {
                        auto segment = Decode(part, false);
                        if (segment) {
                            request.segments.push_back(*std::move(segment));
                        }
                        return segment.has_value();
                    }) &&
           EachPart(query, '&', [&](std::string_view part) { return AddQuery(part, request); });
}

}  // namespace Morquil::Gateway
