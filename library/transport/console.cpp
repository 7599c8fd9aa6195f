#include "transport/console.h"

#include "core/static_lock.h"
#include "transport/piece_printer.h"
#include "transport/standard_output.h"

namespace Morquil {
namespace {

using QRN::Core::StaticLock;
using QRN::Core::StaticLockHold;

const bool wasOpenAtLoad = IsStandardOutputOpen();

constinit StaticLock printerLock;
constinit PiecePrinter printer GUARDED_BY(printerLock){&WriteAtOnce};

}  // namespace

void Print(std::string_view text) {
    if (wasOpenAtLoad) {
        const StaticLockHold lock(printerLock);
        printer.Print(text);
    }
}

}  // namespace Morquil
