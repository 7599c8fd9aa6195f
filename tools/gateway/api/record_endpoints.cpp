#include "gateway/api/record_endpoints.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace Morquil::Gateway {
namespace {

/// Texts that were written as JSON values; null for anything else.
Json ValueIn(const std::string& text) {
    Json json = Json::parse(text, nullptr, false);
    return json.is_discarded() ? Json() : json;
}

Json ToJson(const Change& row) {
    return {{"id", row.id},
            {"time", FormatTime(row.time)},
            {"device", row.device},
            {"property", row.property},
            {"old", ValueIn(row.oldValue)},
            {"new", ValueIn(row.newValue)},
            {"origin", row.origin},
            {"who", row.who.empty() ? Json() : Json(row.who)}};
}

Json ToJson(const Attempt& row) {
    return {{"id", row.id},
            {"time", FormatTime(row.time)},
            {"who", row.who.empty() ? Json() : Json(row.who)},
            {"address", row.address},
            {"device", row.device.empty() ? Json() : Json(row.device)},
            {"property", row.property.empty() ? Json() : Json(row.property)},
            {"value", ValueIn(row.value)},
            {"outcome", row.outcome},
            {"status", row.status},
            {"requestId", row.requestId},
            {"hash", row.hash}};
}

bool SeesEverything(const Identity& identity) {
    return std::find(identity.scopes.begin(), identity.scopes.end(), Scope{}) != identity.scopes.end();
}

// Empty is the beginning, or the end, of time. Returns: false if the text is no time.
bool ReadTime(std::string_view text, std::optional<Time>& time) {
    time = ParseTime(text);
    return text.empty() || time.has_value();
}

bool ReadLimit(std::string_view text, std::size_t& limit) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), limit);
    return error == std::errc() && end == text.data() + text.size() && limit >= 1 && limit <= mostRowsInAPage;
}

/// Returns: nothing after it has answered what is wrong.
std::optional<Query> ReadQuery(const Request& request, const Reply& reply) {
    const auto text = [&](std::string_view name) { return std::string(request.Query(name).value_or("")); };
    Query query{.device = text("device"), .property = text("property"), .after = text("after")};
    if (!ReadTime(text("from"), query.from) || !ReadTime(text("to"), query.to) ||
        !ReadLimit(request.Query("limit").value_or("100"), query.limit)) {
        reply(ProblemResponse(request, 400, "malformed-query",
                              "from and to are times such as 2027-01-31T12:00:00Z, and limit is 1 to 1000"));
        return std::nullopt;
    }
    if (!SeesEverything(request.identity)) {
        query.allowed = [scopes = request.identity.scopes](std::string_view device, std::string_view property) {
            return Covers(scopes, device, property);
        };
    }
    return query;
}

/// What differs between the two.
template <class Row>
struct Table;
template <>
struct Table<Change> {
    static constexpr const char* name = "history";
    static constexpr auto read = &Store::ReadHistory;
    static constexpr auto exportRows = &Store::ExportHistory;
};
template <>
struct Table<Attempt> {
    static constexpr const char* name = "audit";
    static constexpr auto read = &Store::ReadAudit;
    static constexpr auto exportRows = &Store::ExportAudit;
};

Response Unreadable(const Request& request, const std::string& problem) {
    const bool isCursor = problem == notACursor;
    return ProblemResponse(request, isCursor ? 400 : 503, isCursor ? "malformed-query" : "no-database", problem);
}

template <class Row>
void ReplyWithPage(Services& services, const SharedRequest& request, const Query& query, const Reply& reply) {
    (services.store.*Table<Row>::read)(query, [request, reply](const Page<Row>& page) {
        if (!page.problem.empty()) {
            reply(Unreadable(*request, page.problem));
            return;
        }
        Json rows = Json::array();
        for (const Row& row : page.rows) {
            rows.push_back(ToJson(row));
        }
        reply(JsonResponse(200, {{"rows", rows}, {"next", page.next.empty() ? Json() : Json(page.next)}}));
    });
}

/// Sends slice after slice, as fast as the client takes them.
template <class Row>
class Export : public std::enable_shared_from_this<Export<Row>> {
public:
    Export(Store& store, Query query, Format format, Slice first)
        : store_(store), query_(std::move(query)), format_(format), slice_(std::move(first)) {}

    void Next(std::function<void(std::string)> take) {
        if (slice_) {
            Slice slice = *std::exchange(slice_, std::nullopt);
            query_.after = slice.next;
            isAtEnd_ = slice.next.empty();
            // The status has been sent: only a line can say that rows are missing.
            slice.text += slice.problem.empty() ? "" : "{\"problem\":\"" + slice.problem + "\"}\n";
            if (!slice.text.empty()) {
                take(std::move(slice.text));
                return;
            }
        }
        if (isAtEnd_) {
            take({});
            return;
        }
        (store_.*Table<Row>::exportRows)(query_, format_, [self = this->shared_from_this(), take](Slice slice) {
            self->slice_ = std::move(slice);
            self->Next(take);
        });
    }

private:
    Store& store_;
    Query query_;
    Format format_;
    std::optional<Slice> slice_;
    bool isAtEnd_ = false;
};

template <class Row>
Response ExportResponse(Store& store, const Query& query, Format format, Slice first) {
    const bool isCsv = format == Format::Csv;
    const auto rows = std::make_shared<Export<Row>>(store, query, format, std::move(first));
    Response response;
    response.contentType = isCsv ? "text/csv; charset=utf-8" : "application/jsonl";
    response.headers.emplace_back("Content-Disposition", std::string("attachment; filename=\"morquil-") +
                                                             Table<Row>::name + (isCsv ? ".csv\"" : ".jsonl\""));
    response.source = [rows](std::function<void(std::string)> take) { rows->Next(std::move(take)); };
    return response;
}

template <class Row>
void Get(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::string_view format = request->Query("format").value_or("json");
    if (format != "json" && format != "csv" && format != "jsonl") {
        reply(ProblemResponse(*request, 400, "malformed-query", "format is json, csv or jsonl"));
        return;
    }
    const std::optional<Query> query = ReadQuery(*request, reply);
    if (!query) {
        return;
    }
    if (format == "json") {
        ReplyWithPage<Row>(services, request, *query, reply);
        return;
    }
    const Format wanted = format == "csv" ? Format::Csv : Format::JsonLines;
    Store& store = services.store;
    (store.*Table<Row>::exportRows)(*query, wanted, [&store, request, reply, query, wanted](const Slice& first) {
        reply(first.problem.empty() ? ExportResponse<Row>(store, *query, wanted, first)
                                    : Unreadable(*request, first.problem));
    });
}

}  // namespace

void GetHistory(Services& services, const SharedRequest& request, const Reply& reply) {
    Get<Change>(services, request, reply);
}

void GetAudit(Services& services, const SharedRequest& request, const Reply& reply) {
    Get<Attempt>(services, request, reply);
}

}  // namespace Morquil::Gateway
