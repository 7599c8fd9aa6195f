// The API as a document that programs read: OpenAPI 3.1.
#pragma once

#include <span>
#include <string_view>

#include "gateway/api/response.h"

namespace Morquil::Gateway {

/// A request and the status of its answer. The document shows them; the tests send all of them in this order, to a
/// gateway with the device "converter-1", and compare the answers with the document.
struct ApiExample {
    std::string_view name;
    std::string_view method;
    std::string_view path;    // as in the routes: "/api/v1/devices/{name}"
    std::string_view target;  // "/api/v1/devices/converter-1"; $NAME stands for what an earlier answer had there
    std::string_view body;    // JSON; empty for none
    int status;
    std::string_view keep = {};  // a pointer into the answer, whose value is kept under its last part
};
std::span<const ApiExample> ApiExamples();

/// The shapes of all bodies, by name. Those of values are made from the table of properties.
Json OpenApiSchemas();

/// The whole document, made from the routes, the examples and the schemas.
Json OpenApiDocument();

}  // namespace Morquil::Gateway
