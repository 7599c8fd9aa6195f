#include "gateway/web/panel_page.h"

#include "gateway/panel/panel_files.h"

namespace Morquil::Gateway {
namespace {

constexpr const char* keepForAYear = "public, max-age=31536000, immutable";

std::string TagOf(const PanelFile& file) {
    return '"' + std::string(file.tag) + '"';
}

}  // namespace

std::optional<Response> PanelResponse(const Request& request) {
    const PanelFile* const file = FindPanelFile(request.path);
    if (file == nullptr || (request.method != "GET" && request.method != "HEAD")) {
        return std::nullopt;
    }
    const std::string tag = TagOf(*file);
    Response response;
    response.contentType = file->contentType;
    response.headers = {{"Content-Security-Policy", std::string(panelSecurityPolicy)},
                        {"Cache-Control", file->immutable ? keepForAYear : "no-cache"},
                        {"ETag", tag}};
    if (request.Header("if-none-match") == tag) {
        response.status = 304;
        return response;
    }
    response.headers.emplace_back("Content-Encoding", file->encoding);
    response.permanent = file->bytes;
    return response;
}

}  // namespace Morquil::Gateway
