#include "command/top/frame.h"

#include <algorithm>
#include <chrono>

#include "command/text/escape.h"

namespace Morquil::Command {
namespace {

// The lines that are neither devices nor happenings: a title, the heads of both tables, and a blank line.
constexpr std::size_t fixedLines = 4;
constexpr std::size_t fewestHappenings = 5;
constexpr std::size_t columnGap = 2;

struct Column {
    const char* head;
    std::size_t width;
    std::string DeviceView::*text;
};

// clang-format off
constexpr Column columns[] = {
    {"INPUT",     21, &DeviceView::input},
    {"OUTPUT",    14, &DeviceView::output},
    {"REF",        9, &DeviceView::reference},
    {"LOCKS",      8, &DeviceView::locks},
    {"NAME",      40, &DeviceView::name}};
// clang-format on
constexpr std::size_t linkWidth = 12;

/// A line that ends at the edge of the screen.
class ScreenLine {
public:
    explicit ScreenLine(std::size_t width) : left_(width) {}

    /// Adds a text of any length.
    ScreenLine& Add(const std::string& text, Style style = Style::Plain) {
        return AddEscaped(Cut(Escaped(text), left_), style);
    }

    /// Adds a text that takes up `width`, with a blank at its end.
    ScreenLine& AddCell(const std::string& text, std::size_t width, Style style = Style::Plain) {
        const std::size_t room = std::min(width, left_);
        std::string cell = Cut(Escaped(text), room - std::min<std::size_t>(room, 1));
        cell.append(room - WidthOf(cell), ' ');
        return AddEscaped(cell, style);
    }

    Row Cells() { return std::move(cells_); }

private:
    static std::string Cut(const std::string& text, std::size_t width) {
        if (WidthOf(text) <= width) {
            return text;
        }
        return width < 2 ? "" : Beginning(text, width - 1) + "~";
    }

    ScreenLine& AddEscaped(const std::string& text, Style style) {
        left_ -= WidthOf(text);
        cells_.emplace_back(text, style);
        return *this;
    }

    std::size_t left_;
    Row cells_;
};

std::string ClockOf(WallClock::time_point time) {
    constexpr std::size_t date = sizeof "2026-01-31T" - 1;
    return LocalTime(time).substr(date, sizeof "23:59:59" - 1);
}

// "12 s", "3 min", "5 h".
std::string AgeOf(std::chrono::seconds age) {
    using namespace std::chrono_literals;
    if (age < 1min) {
        return std::to_string(std::max(age, 0s).count()) + " s";
    }
    return age < 1h ? std::to_string(age / 1min) + " min" : std::to_string(age / 1h) + " h";
}

Style StyleOf(LinkState link) {
    return link == LinkState::Connected ? Style::Good : link == LinkState::Connecting ? Style::Plain : Style::Bad;
}

std::size_t AddressWidth(const View& view) {
    std::size_t width = std::string_view("ADDRESS").size();
    for (const DeviceView& device : view.devices) {
        width = std::max(width, WidthOf(Escaped(device.address)));
    }
    return std::min<std::size_t>(width, 24) + columnGap;
}

Row Title(const View& view, std::size_t first, std::size_t shown, std::size_t width) {
    const auto connected = std::count_if(view.devices.begin(), view.devices.end(),
                                         [](const DeviceView& device) { return device.link == LinkState::Connected; });
    const std::size_t all = view.devices.size();
    std::string text = ClockOf(view.now) + "  " + std::to_string(connected) + " of " + std::to_string(all) +
                       (all == 1 ? " device" : " devices") + " connected";
    if (shown < all) {
        text += "  (" + std::to_string(first + 1) + "-" + std::to_string(first + shown) + " shown, arrows scroll)";
    }
    return ScreenLine(width).Add(text).Add("  q quits", Style::Faint).Cells();
}

Row DeviceHeads(std::size_t addressWidth, std::size_t width) {
    ScreenLine line(width);
    line.AddCell("ADDRESS", addressWidth, Style::Faint).AddCell("LINK", linkWidth, Style::Faint);
    for (const Column& column : columns) {
        line.AddCell(column.head, column.width, Style::Faint);
    }
    return line.Cells();
}

Row DeviceLine(const DeviceView& device, const View& view, std::size_t addressWidth, std::size_t width) {
    ScreenLine line(width);
    line.AddCell(device.address, addressWidth);
    line.AddCell(std::string(NameOf(device.link)), linkWidth, StyleOf(device.link));
    if (device.link != LinkState::Connected) {
        const auto age = std::chrono::duration_cast<std::chrono::seconds>(view.now - device.since);
        line.Add(AgeOf(age) + (device.cause.empty() ? "" : ": " + device.cause));
        return line.Cells();
    }
    for (const Column& column : columns) {
        const bool isBad = column.text == &DeviceView::input && !device.hasSignal;
        line.AddCell(device.*column.text, column.width, isBad ? Style::Bad : Style::Plain);
    }
    return line.Cells();
}

// One device has room for more than a line.
void AddStatus(std::vector<Row>& lines, const View& view, std::size_t width) {
    constexpr std::size_t titleWidth = 11;
    if (view.devices.size() == 1) {
        for (const auto& [title, text] : view.devices.front().status) {
            lines.push_back(ScreenLine(width).AddCell(title, titleWidth, Style::Faint).Add(text).Cells());
        }
    }
}

Row HappeningLine(const Happening& happening, std::size_t addressWidth, std::size_t width) {
    return ScreenLine(width)
        .Add(ClockOf(happening.time) + "  ", Style::Faint)
        .AddCell(happening.address, addressWidth)
        .Add(happening.text, happening.style)
        .Cells();
}

}  // namespace

std::size_t DevicesOnScreen(std::size_t devices, ScreenSize size) {
    const std::size_t available = size.rows > fixedLines + 1 ? size.rows - fixedLines : 1;
    return std::min(devices, available - std::min(fewestHappenings, available / 2));
}

std::vector<Row> FrameOf(const View& view, ScreenSize size) {
    const std::size_t shown = DevicesOnScreen(view.devices.size(), size);
    const std::size_t first = std::min(view.firstDevice, view.devices.size() - shown);
    const std::size_t addressWidth = AddressWidth(view);
    std::vector<Row> lines = {Title(view, first, shown, size.columns), DeviceHeads(addressWidth, size.columns)};
    for (std::size_t at = first; at < first + shown; ++at) {
        lines.push_back(DeviceLine(view.devices[at], view, addressWidth, size.columns));
    }
    AddStatus(lines, view, size.columns);
    lines.emplace_back();
    lines.push_back(ScreenLine(size.columns).Add("CHANGES, the latest first", Style::Faint).Cells());
    for (const Happening& happening : view.happenings) {
        lines.push_back(HappeningLine(happening, addressWidth, size.columns));
    }
    lines.resize(std::min(lines.size(), size.rows));
    return lines;
}

std::string AsTerminalText(const std::vector<Row>& lines, bool isColoured) {
    constexpr std::string_view home = "\x1b[H";
    constexpr std::string_view clearRestOfLine = "\x1b[K";
    constexpr std::string_view clearBelow = "\x1b[J";
    std::string text(home);
    for (const Row& line : lines) {
        text += &line == lines.data() ? "" : "\r\n";
        for (const Cell& cell : line) {
            text += Painted(cell.text, cell.style, isColoured);
        }
        text += clearRestOfLine;
    }
    return text.append(clearBelow);
}

}  // namespace Morquil::Command
