#ifndef CELLFORMULA_STRUCTURALEDIT_H
#define CELLFORMULA_STRUCTURALEDIT_H

#include <cstdint>
#include <string>

#include "spreadsheethelper.h"

namespace ExpressionParser {

// The rows and columns a sheet has; references beyond them do not exist.
struct SheetSize {
    std::int32_t s32Rows = 1048576;
    std::int32_t s32Columns = 16384;
};

// Rewrites a formula text after an edit of the sheet's structure, the way
// spreadsheets do it: every reference the parser reads moves with the cells
// it names, "$" markers or not; texts, named inputs and function names stay
// as they are. Rows and columns are indices from 0 ("A1" is column 0, row 0).
// A reference that loses all its cells or would leave the sheet becomes
// "#REF"; everything else in the text is kept byte for byte, and a reference
// part that does not move keeps its bytes (lower-case letters stay lower case).
// An edit that makes no sense (a count of 0 or less, rows or columns outside
// the sheet, a block that would not fit) throws std::invalid_argument and
// never shifts anything.
class StructuralEdit {
public:
    // `count` new rows before row index `row` (0 to the number of rows): rows
    // from `row` on move down; a range with `row` after its first row and up
    // to its last grows. A range's end pushed past the sheet stops at its
    // last row; a single cell pushed past it becomes "#REF".
    static std::string oInsertRows(const std::string& formula, std::int32_t row, std::int32_t count,
                                   SheetSize size = SheetSize{});
    // Deletes rows `row` to `row + count - 1` (all inside the sheet): a cell in
    // them becomes "#REF", a range loses them and becomes "#REF" only when
    // none of its rows is left; rows below move up.
    static std::string oDeleteRows(const std::string& formula, std::int32_t row, std::int32_t count,
                                   SheetSize size = SheetSize{});
    static std::string oInsertColumns(const std::string& formula, std::int32_t column, std::int32_t count,
                                      SheetSize size = SheetSize{});
    static std::string oDeleteColumns(const std::string& formula, std::int32_t column, std::int32_t count,
                                      SheetSize size = SheetSize{});
    // The formula copied `rows` down and `columns` right (negative: up, left):
    // relative parts move, parts behind a "$" stay; a range with a corner
    // leaving the sheet becomes "#REF".
    static std::string oCopyFormula(const std::string& formula, std::int32_t rows, std::int32_t columns,
                                    SheetSize size = SheetSize{});
    // The cells of `block` (row and column indices, corners in any order) cut
    // and pasted `rows` down and `columns` right: a reference to a cell of the
    // block, or a range wholly inside it, follows the block whatever its "$"
    // markers; other references stay. The moved block must lie in the sheet.
    static std::string oMoveBlock(const std::string& formula, const SpreadSheetHelper::Selection& block,
                                  std::int32_t rows, std::int32_t columns, SheetSize size = SheetSize{});
};

}  // namespace ExpressionParser

#endif
