// A live view as lines of text.
#pragma once

#include <string>
#include <vector>

#include "command/output/screen.h"
#include "command/output/terminal.h"
#include "command/top/view.h"

namespace Morquil::Command {

/// The lines of a screen of this size, none longer than its width: the devices, and below them what has happened. The
/// cells of a line follow each other without a gap.
std::vector<Row> FrameOf(const View& view, ScreenSize size);

/// How many devices a screen of this size shows.
std::size_t DevicesOnScreen(std::size_t devices, ScreenSize size);

/// What makes a terminal show these lines and nothing else.
std::string AsTerminalText(const std::vector<Row>& lines, bool isColoured);

}  // namespace Morquil::Command
