// The locale of a host whose user writes decimals with a comma.
#pragma once

#include <clocale>
#include <string>

namespace Morquil {

/// Sets the first locale of this machine that writes a decimal comma, else any other than the classic one, and restores
/// the old one at the end.
class ForeignLocale {
public:
    ForeignLocale() : previous_(std::setlocale(LC_ALL, nullptr)) {
        for (const char* const name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "German_Germany.1252", "de-DE"}) {
            if (std::setlocale(LC_ALL, name) != nullptr && std::localeconv()->decimal_point[0] == ',') {
                return;
            }
        }
        std::setlocale(LC_ALL, "C.UTF-8");
    }
    ~ForeignLocale() { std::setlocale(LC_ALL, previous_.c_str()); }
    ForeignLocale(const ForeignLocale&) = delete;
    ForeignLocale& operator=(const ForeignLocale&) = delete;

    std::string Name() const { return std::setlocale(LC_ALL, nullptr); }

private:
    std::string previous_;
};

}  // namespace Morquil
