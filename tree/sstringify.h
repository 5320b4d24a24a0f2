#ifndef CELLFORMULA_SSTRINGIFY_H
#define CELLFORMULA_SSTRINGIFY_H

#include <charconv>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

namespace QuandelUtils {

// The library's one number-to-text conversion: a fresh stream with default
// settings under the classic locale, whatever locale the host has set, so
// 1000000 reads "1e+06" and 1.0/3 reads "0.333333". Internal
// linkage gives every source file that uses it its own instance.
template <typename Value>
static std::string sstringify(const Value& value) {
    // A stream writes character types and bool as themselves, not as numbers,
    // so only the plain integer types may take the short cut.
    using Plain = std::remove_cv_t<Value>;
    constexpr bool plainInteger = std::is_integral_v<Plain> && !std::is_same_v<Plain, bool> &&
                                  !std::is_same_v<Plain, char> && !std::is_same_v<Plain, signed char> &&
                                  !std::is_same_v<Plain, unsigned char> && !std::is_same_v<Plain, wchar_t> &&
                                  !std::is_same_v<Plain, char16_t> && !std::is_same_v<Plain, char32_t>;
    if constexpr (plainInteger) {
        // to_chars writes exactly what a classic-locale stream writes, faster.
        char digits[std::numeric_limits<Plain>::digits10 + 3];
        const std::to_chars_result written = std::to_chars(digits, digits + sizeof digits, value);
        return std::string(digits, written.ptr);
    } else if constexpr (std::is_same_v<Plain, double>) {
        // General form at precision 6 is the stream's default notation under
        // the classic locale ("%g"), and no host locale reaches to_chars.
        char digits[32];
        const std::to_chars_result written =
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
        return std::string(digits, written.ptr);
    } else {
        // The classic locale, not the host's, so that 1234.5 never reads "1.234,5".
        std::stringstream stream;
        stream.imbue(std::locale::classic());
        stream << value;
        return stream.str();
    }
}

}  // namespace QuandelUtils

#endif
