#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/output/screen.h"

namespace Morquil::Command {

enum class Style { Plain, Faint, Good, Bad };

/// A piece of text and its style. Escaped when printed.
struct Cell {
    std::string text;
    Style style = Style::Plain;

    Cell(std::string shown, Style look = Style::Plain) : text(std::move(shown)), style(look) {}  // NOLINT
    Cell(const char* shown) : text(shown) {}                                                     // NOLINT
};

using Row = std::vector<Cell>;

/// What a command prints about one of several devices, until all are done.
struct Collected {
    std::vector<Row> rows;
    std::vector<std::string> documents;  // JSON
    std::vector<std::string> messages;
};

/// Where a command writes: its answers, and its own messages apart from them.
struct Terminal {
    std::function<void(std::string_view)> out;
    std::function<void(std::string_view)> err;
    bool isColoured = false;                // applies to `out`
    std::optional<std::size_t> width = {};  // of its lines, if `out` is a terminal
    /// Opens the terminal as a screen; returns null, or is empty, if there is none.
    std::function<std::unique_ptr<Screen>()> openScreen = {};
    Collected* collected = nullptr;  // if set, takes what would be printed
};

/// `text` in the colours of its style.
std::string Painted(const std::string& text, Style style, bool isColoured);

/// Prints one line: the cells, separated by two blanks.
void PrintLine(const Terminal& terminal, const Row& cells);

/// Prints rows with aligned columns. The last cell of a row may be of any length; on a terminal it is broken into lines
/// that fit.
void PrintTable(const Terminal& terminal, const std::vector<Row>& rows);

/// Prints one line on standard error, escaped, after the program's name.
void PrintMessage(const Terminal& terminal, std::string_view text);

}  // namespace Morquil::Command
