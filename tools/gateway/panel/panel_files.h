// The files of the web panel, as they are served.
#pragma once

#include <string_view>

namespace Morquil::Gateway {

struct PanelFile {
    std::string_view path;         // "/" for the page itself
    std::string_view contentType;  // "text/javascript; charset=utf-8"
    std::string_view encoding;     // of `bytes`: "gzip"
    std::string_view tag;          // differs when the file does: for an ETag
    bool immutable;                // the path contains the file's checksum, so caches may keep it
    std::string_view bytes;
};

/// The file that is served at `path`; null if there is none. It is never freed.
const PanelFile* FindPanelFile(std::string_view path);

/// The Content-Security-Policy that the panel needs, and no more.
inline constexpr std::string_view panelSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

}  // namespace Morquil::Gateway
