#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

enum class Style { Plain, Faint, Good, Bad };

/// Where a command's words go: its answers and, apart from them, what it has to say about itself.
struct Terminal {
    std::function<void(std::string_view)> out;
    std::function<void(std::string_view)> err;
    bool isColoured = false;  // of what goes to `out`
};

/// A piece of text and how it looks. Shown escaped.
struct Cell {
    std::string text;
    Style style = Style::Plain;

    Cell(std::string shown, Style look = Style::Plain) : text(std::move(shown)), style(look) {}  // NOLINT
    Cell(const char* shown) : text(shown) {}                                                     // NOLINT
};

using Row = std::vector<Cell>;

/// One line: the cells, two blanks apart.
void PrintLine(const Terminal& terminal, const Row& cells);

/// Rows whose cells begin at the same columns. The last cell of a row may be of any length.
void PrintTable(const Terminal& terminal, const std::vector<Row>& rows);

/// One line on standard error that begins with the program's name. Escaped.
void Tell(const Terminal& terminal, std::string_view text);

}  // namespace Morquil::Command
