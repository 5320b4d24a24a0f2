#include "roundtripnumber.h"

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

namespace cellformula::cli {

namespace {

std::string withPrecision(double value, int digits) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(digits);
    out << value;
    return out.str();
}

// from_chars reads as the classic locale does and keeps subnormal numbers.
bool readsBackAs(const std::string& text, double value) {
    double read = 0;
    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), read);
    return result.ec == std::errc() && read == value && std::signbit(read) == std::signbit(value);
}

}  // namespace

std::string roundTripNumberText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    for (int digits = 15; digits < 17; ++digits) {
        std::string text = withPrecision(value, digits);
        if (readsBackAs(text, value)) return text;
    }
    return withPrecision(value, 17);
}

}  // namespace cellformula::cli
