#include "gateway/store/time.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace Morquil::Gateway {
namespace {

using namespace std::chrono;

/// Takes numbers and letters off the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    /// A number of exactly `digits` digits that is not above `most`.
    int Number(std::size_t digits, int most) {
        int number = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            number = number * 10 + Digit();
        }
        isGood_ = isGood_ && number <= most;
        return number;
    }
    void Letter(std::string_view oneOf) {
        isGood_ = isGood_ && !rest_.empty() && oneOf.find(rest_.front()) != oneOf.npos;
        Skip();
    }
    bool Take(char letter) {
        if (rest_.empty() || rest_.front() != letter) {
            return false;
        }
        Skip();
        return true;
    }
    /// The milliseconds of a fraction of any length.
    milliseconds Fraction() {
        milliseconds result{0};
        int weight = 100;
        do {
            result += milliseconds(weight * Digit());
            weight /= 10;
        } while (isGood_ && !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9');
        return result;
    }
    bool IsDone() const { return isGood_ && rest_.empty(); }

private:
    int Digit() {
        isGood_ = isGood_ && !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
        const int digit = isGood_ ? rest_.front() - '0' : 0;
        Skip();
        return digit;
    }
    void Skip() {
        if (!rest_.empty()) {
            rest_.remove_prefix(1);
        }
    }

    std::string_view rest_;
    bool isGood_ = true;
};

minutes ReadOffset(Reader& reader) {
    if (reader.Take('Z') || reader.Take('z')) {
        return minutes{0};
    }
    const bool isWest = reader.Take('-');
    if (!isWest) {
        reader.Letter("+");
    }
    const hours whole(reader.Number(2, 23));
    reader.Letter(":");
    const minutes offset = whole + minutes(reader.Number(2, 59));
    return isWest ? -offset : offset;
}

}  // namespace

Time Now() {
    return floor<milliseconds>(system_clock::now());
}

std::string FormatTime(Time time) {
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::array<char, 48> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", int(date.year()),
                      unsigned(date.month()), unsigned(date.day()), int(clock.hours().count()),
                      int(clock.minutes().count()), int(clock.seconds().count()), int(clock.subseconds().count()));
    return std::string(text.data(), std::size_t(length));
}

std::optional<Time> ParseTime(std::string_view text) {
    Reader reader(text);
    const year y(reader.Number(4, 9999));
    reader.Letter("-");
    const month m(unsigned(reader.Number(2, 12)));
    reader.Letter("-");
    const year_month_day date = y / m / day(unsigned(reader.Number(2, 31)));
    reader.Letter("Tt ");
    Time time = sys_days(date) + hours(reader.Number(2, 23));
    reader.Letter(":");
    time += minutes(reader.Number(2, 59));
    reader.Letter(":");
    time += seconds(reader.Number(2, 60));
    if (reader.Take('.')) {
        time += reader.Fraction();
    }
    time -= ReadOffset(reader);
    return reader.IsDone() && date.ok() ? std::optional(time) : std::nullopt;
}

}  // namespace Morquil::Gateway
