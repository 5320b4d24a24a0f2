#ifndef CELLFORMULA_EDITRULE_H
#define CELLFORMULA_EDITRULE_H

// Where references and cells go under one structural edit. Internal to the
// library; not installed.
#include <cstdint>
#include <string>

#include "cellreferences.h"
#include "spreadsheethelper.h"
#include "structuraledit.h"

namespace ExpressionParser {

// A rectangle of cells by indices from 0, first corner <= last corner.
struct CellRect {
    std::int32_t firstColumn;
    std::int32_t firstRow;
    std::int32_t lastColumn;
    std::int32_t lastRow;
};

// One checked structural edit. The factories throw std::invalid_argument for
// an edit that makes no sense, so that no caller ever shifts silently.
class EditRule {
public:
    static EditRule insertRows(std::int32_t row, std::int32_t count, SheetSize size);
    static EditRule deleteRows(std::int32_t row, std::int32_t count, SheetSize size);
    static EditRule insertColumns(std::int32_t column, std::int32_t count, SheetSize size);
    static EditRule deleteColumns(std::int32_t column, std::int32_t count, SheetSize size);
    static EditRule copy(std::int32_t rows, std::int32_t columns, SheetSize size);
    static EditRule move(const SpreadSheetHelper::Selection& block, std::int32_t rows, std::int32_t columns,
                         SheetSize size);

    // The new corners of a reference (each corner keeps its own place in the
    // range as written); false when it becomes "#REF".
    bool mapReference(const CellReference& reference, CellCorner& from, CellCorner& to) const;
    // Where the cell at (column, row) goes; false when it is deleted or, for a
    // move, overwritten by the pasted block.
    bool mapCell(std::int32_t& column, std::int32_t& row) const;

private:
    enum class Kind { Insert, Delete, Copy, Move };

    // The one axis an insertion or deletion acts on, or one axis of a move.
    struct Axis {
        std::int64_t at = 0;
        std::int64_t count = 0;  // inserted or deleted; the offset of a copy or move
        std::int64_t limit = 0;  // the sheet's rows or columns
    };

    EditRule(Kind kind, bool onRows, Axis rows, Axis columns) : kind_(kind), onRows_(onRows), rows_(rows), columns_(columns) {}

    bool shiftSpan(const Axis& axis, std::int64_t& first, std::int64_t& last) const;
    bool inBlock(std::int64_t column, std::int64_t row) const;

    Kind kind_;
    bool onRows_;  // an insertion or deletion of rows (else of columns)
    Axis rows_;
    Axis columns_;
    CellRect block_{};  // of a move
};

// The formula with every reference the parser reads mapped by `rule`.
std::string applyEdit(const std::string& formula, const EditRule& rule);

}  // namespace ExpressionParser

#endif
