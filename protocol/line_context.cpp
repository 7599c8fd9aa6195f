#include "protocol/line_context.h"

namespace Morquil {

// The formats are the constant failure texts of the block tables, never received text.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void ReportLine(const LineContext& line, const char* format, const char* first, const char* second) {
    line.errors.ReportErrorFormatted(format, first, second);
}
#pragma GCC diagnostic pop

}  // namespace Morquil
