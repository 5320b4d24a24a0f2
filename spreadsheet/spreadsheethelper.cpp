#include "spreadsheethelper.h"

#include <algorithm>
#include <limits>

namespace SpreadSheetHelper {
namespace {

constexpr std::uint64_t kLargestInt = std::numeric_limits<int>::max();

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char toUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Letters and digits of a cell name, as collected by readName.
struct NameParts {
    std::string letters;
    std::string digits;
};

// A "$" may stand before the letters or between letters and digits, once,
// and never right before a leading "0".
bool acceptsMarker(const std::string& name, std::size_t at, bool letterPhase) {
    if (!letterPhase) return false;
    if (at > 0 && name[at - 1] == '$') return false;
    return at + 1 == name.size() || name[at + 1] != '0';
}

bool readName(const std::string& name, NameParts& parts) {
    bool letterPhase = true;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        if (c == '$') {
            if (!acceptsMarker(name, at, letterPhase)) return false;
            letterPhase = parts.letters.empty();
        } else if (isUpper(c) && letterPhase) {
            parts.letters += c;
        } else {
            if (!isDigit(c) || parts.letters.empty() || (letterPhase && c == '0')) return false;
            parts.digits += c;
            letterPhase = false;
        }
    }
    return !parts.digits.empty();
}

// The exact column index, computed wide so that long letter runs cannot wrap
// into a small index; false when it does not fit an int.
bool columnFits(const std::string& letters) {
    std::uint64_t value = 0;
    for (const char c : letters) {
        value = value * 26 + static_cast<std::uint64_t>(c - 'A' + 1);
        if (value - 1 > kLargestInt) return false;
    }
    return true;
}

// The row number of decimal digits, or false when it does not fit an int.
bool readRowNumber(const std::string& digits, int& number) {
    std::uint64_t value = 0;
    for (const char c : digits) {
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
        if (value > kLargestInt) return false;
    }
    number = static_cast<int>(value);
    return true;
}

}  // namespace

std::uint32_t u32GetIdxByLetter(const std::string& letters) {
    // Unsigned arithmetic wraps instead of overflowing for letter runs longer
    // than any real column.
    std::uint32_t sum = 0;
    for (const char c : letters) {
        sum = sum * 26u + (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) - 64u);
    }
    return sum - 1u;
}

std::string oGetLetterByIdx(int index) {
    // A negative index names no column; an empty text is safer than a stray character.
    if (index < 0) return std::string();
    std::string reversed;
    while (index >= 26) {
        index -= 26;
        reversed += static_cast<char>('A' + index % 26);
        index /= 26;
    }
    reversed += static_cast<char>('A' + index);
    return std::string(reversed.rbegin(), reversed.rend());
}

std::int8_t s8CreateColumnLine(std::string name, int& column, int& row) {
    std::transform(name.begin(), name.end(), name.begin(), toUpper);
    NameParts parts;
    int rowNumber = 0;
    // Names whose coordinates do not fit an int are refused, so callers never
    // meet a wrapped or negative index.
    if (!readName(name, parts) || !columnFits(parts.letters) || !readRowNumber(parts.digits, rowNumber)) {
        return -1;
    }
    column = static_cast<int>(u32GetIdxByLetter(parts.letters));
    row = rowNumber - 1;
    return 0;
}

}  // namespace SpreadSheetHelper
