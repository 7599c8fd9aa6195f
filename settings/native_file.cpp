#include "settings/native_file.h"

#include <utility>

namespace Morquil {

NativeFile& NativeFile::operator=(NativeFile&& other) noexcept {
    if (this != &other) {
        Close();
        handle_ = std::exchange(other.handle_, none);
    }
    return *this;
}

}  // namespace Morquil
