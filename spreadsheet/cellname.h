#ifndef CELLFORMULA_CELLNAME_H
#define CELLFORMULA_CELLNAME_H

#include <cstdint>
#include <limits>
#include <string_view>

namespace SpreadSheetHelper {

// A cell name's coordinates, indexed from 0, and its "$" markers.
struct CellName {
    std::int32_t column = 0;
    std::int32_t row = 0;
    bool columnAbsolute = false;
    bool rowAbsolute = false;
};

namespace cellname {

constexpr std::uint64_t kLargestInt = std::numeric_limits<std::int32_t>::max();

// The letter's place in the alphabet (0 for "A" or "a"), 26 or more for any other byte.
inline unsigned letterIndex(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c) | 0x20u) - 'a';
}

inline unsigned digitValue(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

}  // namespace cellname

// Reads `text` as a cell name: an optional "$", letters of either case, an
// optional "$", digits that do not start with "0", each coordinate within an
// int. It reads the bytes in place, so a scan over many names builds no
// strings, and fills `name` only when the whole text is a cell name.
inline bool readCellName(std::string_view text, CellName& name) {
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool columnAbsolute = at < end && *at == '$';
    if (columnAbsolute) ++at;
    const char* const letters = at;
    std::uint64_t column = 0;
    for (unsigned letter = 0; at < end && (letter = cellname::letterIndex(*at)) < 26; ++at) {
        column = column * 26 + letter + 1;
        if (column - 1 > cellname::kLargestInt) return false;
    }
    if (at == letters) return false;
    const bool rowAbsolute = at < end && *at == '$';
    if (rowAbsolute) ++at;
    if (at == end || *at == '0') return false;
    std::uint64_t row = 0;
    for (; at < end; ++at) {
        const unsigned digit = cellname::digitValue(*at);
        if (digit > 9) return false;
        row = row * 10 + digit;
        if (row > cellname::kLargestInt) return false;
    }
    name.column = static_cast<std::int32_t>(column - 1);
    name.row = static_cast<std::int32_t>(row - 1);
    name.columnAbsolute = columnAbsolute;
    name.rowAbsolute = rowAbsolute;
    return true;
}

}  // namespace SpreadSheetHelper

#endif
