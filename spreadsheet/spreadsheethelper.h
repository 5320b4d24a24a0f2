#ifndef CELLFORMULA_SPREADSHEETHELPER_H
#define CELLFORMULA_SPREADSHEETHELPER_H

#include <cstdint>
#include <string>

// Column letters, cell names and coordinates. Columns are indexed from 0
// ("A" = 0, "AA" = 26); rows are numbered from 1 in names, indexed from 0.
namespace SpreadSheetHelper {

// Column index of upper-case letters; 4294967295 for the empty text.
std::uint32_t u32GetIdxByLetter(const std::string& letters);

// Column letters of a non-negative column index.
std::string oGetLetterByIdx(int index);

// Reads a cell name such as "B12", "$A$1" or "c3" into column and row
// indices. Returns 0 on success, -1 (outputs untouched) when the name is not
// a cell name.
std::int8_t s8CreateColumnLine(std::string name, int& column, int& row);

// Whether the text reads as a plain number ("42", " -7", ".5", "12 34"), so
// that it may stand as a formula without the leading "=".
bool bIsNumber(const std::string& text);

// A rectangle of cells, kept as given.
class Selection {
public:
    Selection(std::int32_t rowStart, std::int32_t colStart, std::int32_t rowEnd, std::int32_t colEnd)
        : rowStart_(rowStart), colStart_(colStart), rowEnd_(rowEnd), colEnd_(colEnd) {}

    std::int32_t s32RowStart() const { return rowStart_; }
    std::int32_t s32ColStart() const { return colStart_; }
    std::int32_t s32RowEnd() const { return rowEnd_; }
    std::int32_t s32ColEnd() const { return colEnd_; }

private:
    std::int32_t rowStart_;
    std::int32_t colStart_;
    std::int32_t rowEnd_;
    std::int32_t colEnd_;
};

}  // namespace SpreadSheetHelper

#endif
