#include "settings/native_path.h"

namespace Morquil {

NativePath ToNativePath(const std::string& path) {
    return path.find('\0') == std::string::npos ? path : NativePath();
}

}  // namespace Morquil
