#pragma once

#include "settings/native_file.h"

namespace Morquil {

/// Gives the file `to` the owner, the permissions and whatever else the system keeps about the file `from` beside its
/// content. Returns: false when `to` cannot be made the same. Throws: std::bad_alloc.
bool CopyAttributes(const NativeFile& from, const NativeFile& to);

}  // namespace Morquil
