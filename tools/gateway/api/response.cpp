#include "gateway/api/response.h"

#include <algorithm>
#include <array>

#include "gateway/api/request.h"

namespace Morquil::Gateway {
namespace {

struct Reason {
    int status;
    std::string_view text;
};
constexpr std::array reasons{Reason{200, "OK"},
                             Reason{201, "Created"},
                             Reason{202, "Accepted"},
                             Reason{204, "No Content"},
                             Reason{304, "Not Modified"},
                             Reason{400, "Bad Request"},
                             Reason{401, "Unauthorized"},
                             Reason{403, "Forbidden"},
                             Reason{404, "Not Found"},
                             Reason{405, "Method Not Allowed"},
                             Reason{408, "Request Timeout"},
                             Reason{409, "Conflict"},
                             Reason{412, "Precondition Failed"},
                             Reason{413, "Content Too Large"},
                             Reason{415, "Unsupported Media Type"},
                             Reason{421, "Misdirected Request"},
                             Reason{422, "Unprocessable Content"},
                             Reason{423, "Locked"},
                             Reason{429, "Too Many Requests"},
                             Reason{431, "Request Header Fields Too Large"},
                             Reason{500, "Internal Server Error"},
                             Reason{503, "Service Unavailable"},
                             Reason{504, "Gateway Timeout"}};

/// "not-offered" to "Not offered".
std::string TitleOf(std::string_view kind) {
    std::string title(kind);
    std::replace(title.begin(), title.end(), '-', ' ');
    title.front() = static_cast<char>(title.front() - 'a' + 'A');
    return title;
}

}  // namespace

std::string_view ReasonOf(int status) {
    const auto found =
        std::find_if(reasons.begin(), reasons.end(), [&](const Reason& reason) { return reason.status == status; });
    return found == reasons.end() ? "Unknown" : found->text;
}

std::string DumpJson(const Json& json) {
    // Texts of devices may hold bytes that are no UTF-8.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Response JsonResponse(int status, const Json& json) {
    Response response;
    response.status = status;
    response.body = DumpJson(json);
    return response;
}

Response NoContent() {
    Response response;
    response.status = 204;
    response.contentType.clear();
    return response;
}

Response ProblemResponse(const Request& request, int status, std::string_view kind, std::string detail, Json members) {
    Json problem = {{"type", "/problems/" + std::string(kind)},
                    {"title", TitleOf(kind)},
                    {"status", status},
                    {"detail", std::move(detail)},
                    {"instance", request.id}};
    problem.update(members);
    Response response = JsonResponse(status, problem);
    response.contentType = "application/problem+json";
    return response;
}

}  // namespace Morquil::Gateway
