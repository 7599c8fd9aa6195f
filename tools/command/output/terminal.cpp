#include "command/output/terminal.h"

#include <algorithm>

#include "command/text/escape.h"
#include "command/text/wrapped.h"

namespace Morquil::Command {
namespace {

constexpr std::string_view gap = "  ";

std::string_view ColourOf(Style style) {
    // clang-format off
    switch (style) {
        case Style::Plain: return "";
        case Style::Faint: return "\x1b[2m";
        case Style::Good:  return "\x1b[32m";
        case Style::Bad:   return "\x1b[31m";
    }
    // clang-format on
    return "";
}

std::string LineOf(const Terminal& terminal, const Row& cells, const std::vector<std::size_t>& widths) {
    std::string line;
    std::size_t missing = 0;  // blanks that are written only if something follows
    for (std::size_t column = 0; column < cells.size(); ++column) {
        const std::string text = Escaped(cells[column].text);
        if (!text.empty()) {
            line += std::string(missing, ' ') + Painted(text, cells[column].style, terminal.isColoured);
            missing = 0;
        }
        const std::size_t width = column < widths.size() ? widths[column] : 0;
        missing += gap.size() + std::max(width, WidthOf(text)) - WidthOf(text);
    }
    return line + '\n';
}

// The cells that the row becomes on a terminal of this width: further lines continue the last cell.
std::vector<Row> Folded(const Row& row, const std::vector<std::size_t>& widths, std::optional<std::size_t> width) {
    constexpr std::size_t narrowest = 20;
    std::size_t before = 0;
    for (std::size_t column = 0; column + 1 < row.size(); ++column) {
        before += widths[column] + gap.size();
    }
    if (!width || row.empty() || before + narrowest > *width || before + WidthOf(Escaped(row.back().text)) <= *width) {
        return {row};
    }
    std::vector<Row> rows;
    for (const std::string& part : Wrapped(row.back().text, *width - before)) {
        rows.push_back(rows.empty() ? row : Row(row.size(), ""));
        rows.back().back() = {part, row.back().style};
    }
    return rows;
}

}  // namespace

std::string Painted(const std::string& text, Style style, bool isColoured) {
    if (!isColoured || style == Style::Plain || text.empty()) {
        return text;
    }
    return std::string(ColourOf(style)) + text + "\x1b[0m";
}

void PrintLine(const Terminal& terminal, const Row& cells) {
    if (terminal.collected != nullptr) {
        terminal.collected->rows.push_back(cells);
        return;
    }
    terminal.out(LineOf(terminal, cells, {}));
}

void PrintTable(const Terminal& terminal, const std::vector<Row>& rows) {
    if (terminal.collected != nullptr) {
        terminal.collected->rows.insert(terminal.collected->rows.end(), rows.begin(), rows.end());
        return;
    }
    std::vector<std::size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column + 1 < row.size(); ++column) {
            widths[column] = std::max(widths[column], WidthOf(Escaped(row[column].text)));
        }
    }
    std::string text;
    for (const Row& row : rows) {
        for (const Row& line : Folded(row, widths, terminal.width)) {
            text += LineOf(terminal, line, widths);
        }
    }
    terminal.out(text);
}

void PrintMessage(const Terminal& terminal, std::string_view text) {
    if (terminal.collected != nullptr) {
        terminal.collected->messages.emplace_back(text);
        return;
    }
    terminal.err("morquilctl: " + Escaped(text) + "\n");
}

}  // namespace Morquil::Command
