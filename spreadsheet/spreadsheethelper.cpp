#include "spreadsheethelper.h"

#include "cellname.h"

namespace SpreadSheetHelper {

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
    // Names whose coordinates do not fit an int are refused, so callers never
    // meet a wrapped or negative index.
    CellName cell;
    if (!readCellName(name, cell)) return -1;
    column = cell.column;
    row = cell.row;
    return 0;
}

}  // namespace SpreadSheetHelper
