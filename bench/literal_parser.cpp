#include "bench/literal_parser.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace Morquil::Bench {

void LiteralParser::Feed(const char* bytes, std::size_t length) {
    for (std::size_t at = 0; at < length; ++at) {
        if (length_ == sizeof line_ - 1) {
            Report("Input data reached maximum line size of %d characters", static_cast<int>(length_));
            length_ = 0;
        }
        if (bytes[at] == '\r') {
            continue;
        }
        if (bytes[at] != '\n') {
            line_[length_++] = bytes[at];
            continue;
        }
        line_[length_] = '\0';
        TakeLine();
        length_ = 0;
    }
}

void LiteralParser::TakeLine() {
    if (length_ == 0) {
        blocks_.End();
        state_ = State::Header;
    } else if (state_ == State::Header) {
        ProcessHeader();
    } else if (state_ == State::Inside) {
        TakeKeyAndValue();
    }
}

void LiteralParser::ProcessHeader() {
    if (line_[length_ - 1] == ':') {
        line_[length_ - 1] = '\0';
    }
    if (SameText(line_, "PING")) {
        blocks_.Sink().OnPing();
    } else if (SameText(line_, "ACK")) {
        blocks_.Sink().OnAcknowledge(true);
    } else if (SameText(line_, "NACK")) {
        blocks_.Sink().OnAcknowledge(false);
    } else {
        state_ = blocks_.Begin(line_) ? State::Inside : State::Skipping;
        if (state_ == State::Skipping) {
            Report("Received unknown block header \"%s\"\n", line_);
        }
    }
}

void LiteralParser::TakeKeyAndValue() {
    char* key = nullptr;
    char* value = nullptr;
    bool colonSeen = false;
    for (char* at = line_; *at != '\0' && value == nullptr; ++at) {
        if (*at == ':') {
            *at = '\0';
            colonSeen = true;
        } else if (*at == ' ') {
            continue;
        } else if (key == nullptr) {
            key = at;
        } else if (colonSeen) {
            value = at;
        }
    }
    if (!colonSeen) {
        Report("Received line with no colon character\n");
    } else if (value == nullptr) {
        Report("Received line \"%s\" with no value string\n", line_);
    } else if (!blocks_.Read(key, value)) {
        Report("Unknown line \"%s\"\n", key);
    }
}

void LiteralParser::Report(const char* format, ...) {
    char text[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    blocks_.Sink().OnProtocolError(text);
}

}  // namespace Morquil::Bench
