#include <array>

#include "gateway/api/open_api.h"

namespace Morquil::Gateway {
namespace {

// clang-format off
constexpr std::array examples{
    ApiExample{"me",            "GET", "/api/v1/me",         "/api/v1/me",         "", 200},
    ApiExample{"allProperties", "GET", "/api/v1/properties", "/api/v1/properties", "", 200},
    ApiExample{"document",      "GET", "/api/v1/openapi.json", "/api/v1/openapi.json", "", 200},

    ApiExample{"allDevices",    "GET",    "/api/v1/devices",        "/api/v1/devices",             "", 200},
    ApiExample{"oneDevice",     "GET",    "/api/v1/devices/{name}", "/api/v1/devices/converter-1", "", 200},
    ApiExample{"unknownDevice", "GET",    "/api/v1/devices/{name}", "/api/v1/devices/convertor-1", "", 404},
    ApiExample{"addDevice",     "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "cam-1", "label": "Camera 1", "address": "127.250.250.30", "room": "Studio A", "tags": ["news"]})", 201},
    ApiExample{"nameTaken",     "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "cam-1", "address": "127.250.250.31"})", 409},
    ApiExample{"faultyDevice",  "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "Camera 2", "address": "127.250.250.31"})", 422},
    ApiExample{"renameDevice",  "PATCH",  "/api/v1/devices/{name}", "/api/v1/devices/cam-1",       R"({"name": "cam-2", "enabled": false})", 200},
    ApiExample{"removeDevice",  "DELETE", "/api/v1/devices/{name}", "/api/v1/devices/cam-2",       "", 204},
    ApiExample{"probe",         "POST",   "/api/v1/probe",          "/api/v1/probe",               R"({"address": "127.250.250.31"})", 200},

    ApiExample{"allValues",   "GET",   "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties",                      "", 200},
    ApiExample{"oneValue",    "GET",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/proc-amp.gain",        "", 200},
    ApiExample{"setValue",    "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/proc-amp.gain",        R"({"value": 12})", 200},
    ApiExample{"queueValue",  "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/color.red?wait=queued", R"({"value": 3})", 202},
    ApiExample{"notOffered",  "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/output.video-mode",    R"({"value": "1080i51"})", 422},
    ApiExample{"setWord",     "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/output.video-mode",    R"({"value": "1080p50"})", 200},
    ApiExample{"setSeveral",  "PATCH", "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties?deadline=5s",          R"({"values": {"proc-amp.gain": -3, "color.green": 4}})", 200},
    ApiExample{"noneIsSet",   "PATCH", "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties",                      R"({"values": {"proc-amp.gain": 99, "color.green": 4}})", 422},
};
// clang-format on

}  // namespace

std::span<const ApiExample> ApiExamples() {
    return examples;
}

}  // namespace Morquil::Gateway
