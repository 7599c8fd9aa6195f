#pragma once

#include <string>

namespace Morquil::Testing {

/// A certificate for `name`, signed by itself, and its key, in PEM form.
struct Certificate {
    std::string certificate;
    std::string key;
};
Certificate MakeCertificate(const std::string& name);

}  // namespace Morquil::Testing
