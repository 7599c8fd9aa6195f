#include "gateway/web/static_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace Morquil::Gateway {
namespace {

struct FileType {
    std::string_view extension;
    std::string_view contentType;
};
constexpr std::array types{FileType{".html", "text/html; charset=utf-8"},
                           FileType{".js", "text/javascript; charset=utf-8"},
                           FileType{".mjs", "text/javascript; charset=utf-8"},
                           FileType{".css", "text/css; charset=utf-8"},
                           FileType{".svg", "image/svg+xml"},
                           FileType{".png", "image/png"},
                           FileType{".ico", "image/x-icon"},
                           FileType{".json", "application/json"}};

std::string TypeOf(const std::filesystem::path& path) {
    const auto found = std::find_if(types.begin(), types.end(),
                                    [&](const FileType& type) { return path.extension() == type.extension; });
    return found == types.end() ? "application/octet-stream" : std::string(found->contentType);
}

}  // namespace

std::optional<Response> ReadFromFolder(const std::string& folder, const Request& request) {
    std::filesystem::path path = folder;
    for (const std::string& segment : request.segments) {
        if (segment.starts_with('.') || segment.find('/') != std::string::npos) {
            return std::nullopt;
        }
        path /= segment;
    }
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        path /= "index.html";
    }
    std::ifstream file(path, std::ios::binary);
    if (!file || !std::filesystem::is_regular_file(path, error)) {
        return std::nullopt;
    }
    Response response;
    response.contentType = TypeOf(path);
    response.body.assign(std::istreambuf_iterator<char>(file), {});
    response.headers.emplace_back(
        "Content-Security-Policy",
        "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src 'self'; base-uri 'none'; "
        "form-action 'none'; frame-ancestors 'none'");
    return response;
}

}  // namespace Morquil::Gateway
