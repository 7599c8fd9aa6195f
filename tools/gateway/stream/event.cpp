#include "gateway/stream/event.h"

namespace Morquil::Gateway {

EventText::EventText(std::string_view name, const Json& body, std::string_view id) {
    text_ = "event: ";
    text_ += name;
    text_ += "\ndata: ";
    dataBegin_ = text_.size();
    // Texts of devices may hold bytes that are no UTF-8.
    text_ += body.dump(-1, ' ', false, Json::error_handler_t::replace);
    dataSize_ = text_.size() - dataBegin_;
    text_ += '\n';
    if (!id.empty()) {
        text_ += "id: ";
        text_ += id;
        text_ += '\n';
    }
    text_ += '\n';
}

}  // namespace Morquil::Gateway
