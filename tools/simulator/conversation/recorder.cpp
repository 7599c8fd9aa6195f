#include "simulator/conversation/recorder.h"

namespace Morquil::Simulator {

using Kind = ConversationEvent::Kind;

Recorder::Recorder(Station& station, std::function<void(const std::string&)> write)
    : station_(station), write_(std::move(write)) {
    write_(ConversationHeading());
}

void Recorder::Write(HostId host, Moment now, Kind kind, std::string text) {
    write_(ConversationLine({.time = now, .host = host, .kind = kind, .text = std::move(text)}));
}

void Recorder::Connect(HostId host, Moment now) {
    Write(host, now, Kind::HostConnects);
    station_.Connect(host, now);
}

void Recorder::Disconnect(HostId host, Moment now) {
    if (host != std::exchange(hungUpOn_, 0)) {
        Write(host, now, Kind::HostLeaves);
    }
    station_.Disconnect(host, now);
}

void Recorder::Receive(HostId host, std::string_view bytes, Moment now) {
    Write(host, now, Kind::HostSays, std::string(bytes));
    station_.Receive(host, bytes, now);
}

Delivery Recorder::Take(HostId host, Moment now) {
    Delivery delivery = station_.Take(host, now);
    if (!delivery.bytes.empty()) {
        Write(host, now, Kind::DeviceSays, delivery.bytes);
    }
    if (delivery.hangUp) {
        Write(host, now, Kind::DeviceHangsUp);
        hungUpOn_ = host;
    }
    return delivery;
}

}  // namespace Morquil::Simulator
