#include "editrule.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace ExpressionParser {
namespace {

void require(bool condition, const std::string& problem) {
    if (!condition) throw std::invalid_argument(problem);
}

void checkSize(SheetSize size) {
    require(size.s32Rows > 0 && size.s32Columns > 0, "the sheet must have at least one row and one column");
}

// Checks an insertion or deletion of `count` lines (rows or columns) at index `at` of `limit` lines.
void checkLines(bool insertion, std::int64_t at, std::int64_t count, std::int64_t limit, const char* lines) {
    const std::string what = std::string(insertion ? "insert " : "delete ") + lines;
    require(count > 0, "cannot " + what + ": the count " + std::to_string(count) + " must be 1 or more");
    if (insertion) {
        require(at >= 0 && at <= limit, "cannot " + what + " before index " + std::to_string(at) +
                                             ": the sheet has " + std::to_string(limit) + " " + lines);
    } else {
        require(at >= 0 && at + count <= limit, "cannot " + what + " " + std::to_string(at) + " to " +
                                                    std::to_string(at + count - 1) + ": the sheet has " +
                                                    std::to_string(limit) + " " + lines);
    }
}

bool inside(std::int64_t value, std::int64_t limit) { return value >= 0 && value < limit; }

}  // namespace

EditRule EditRule::insertRows(std::int32_t row, std::int32_t count, SheetSize size) {
    checkSize(size);
    checkLines(true, row, count, size.s32Rows, "rows");
    return EditRule(Kind::Insert, true, Axis{row, count, size.s32Rows}, Axis{0, 0, size.s32Columns});
}

EditRule EditRule::deleteRows(std::int32_t row, std::int32_t count, SheetSize size) {
    checkSize(size);
    checkLines(false, row, count, size.s32Rows, "rows");
    return EditRule(Kind::Delete, true, Axis{row, count, size.s32Rows}, Axis{0, 0, size.s32Columns});
}

EditRule EditRule::insertColumns(std::int32_t column, std::int32_t count, SheetSize size) {
    checkSize(size);
    checkLines(true, column, count, size.s32Columns, "columns");
    return EditRule(Kind::Insert, false, Axis{0, 0, size.s32Rows}, Axis{column, count, size.s32Columns});
}

EditRule EditRule::deleteColumns(std::int32_t column, std::int32_t count, SheetSize size) {
    checkSize(size);
    checkLines(false, column, count, size.s32Columns, "columns");
    return EditRule(Kind::Delete, false, Axis{0, 0, size.s32Rows}, Axis{column, count, size.s32Columns});
}

EditRule EditRule::copy(std::int32_t rows, std::int32_t columns, SheetSize size) {
    checkSize(size);
    return EditRule(Kind::Copy, false, Axis{0, rows, size.s32Rows}, Axis{0, columns, size.s32Columns});
}

EditRule EditRule::move(const SpreadSheetHelper::Selection& block, std::int32_t rows, std::int32_t columns,
                        SheetSize size) {
    checkSize(size);
    const CellRect rect{std::min(block.s32ColStart(), block.s32ColEnd()), std::min(block.s32RowStart(), block.s32RowEnd()),
                        std::max(block.s32ColStart(), block.s32ColEnd()), std::max(block.s32RowStart(), block.s32RowEnd())};
    require(rect.firstColumn >= 0 && rect.firstRow >= 0 && rect.lastColumn < size.s32Columns &&
                rect.lastRow < size.s32Rows,
            "cannot move a block that does not lie in the sheet");
    const std::int64_t firstRow = std::int64_t{rect.firstRow} + rows;
    const std::int64_t lastRow = std::int64_t{rect.lastRow} + rows;
    const std::int64_t firstColumn = std::int64_t{rect.firstColumn} + columns;
    const std::int64_t lastColumn = std::int64_t{rect.lastColumn} + columns;
    require(firstRow >= 0 && firstColumn >= 0 && lastRow < size.s32Rows && lastColumn < size.s32Columns,
            "cannot move the block by " + std::to_string(rows) + " rows and " + std::to_string(columns) +
                " columns: it would leave the sheet");
    EditRule rule(Kind::Move, false, Axis{0, rows, size.s32Rows}, Axis{0, columns, size.s32Columns});
    rule.block_ = rect;
    return rule;
}

bool EditRule::shiftSpan(const Axis& axis, std::int64_t& first, std::int64_t& last) const {
    if (kind_ == Kind::Insert) {
        if (first >= axis.at) first += axis.count;
        if (last >= axis.at) last += axis.count;
        if (first >= axis.limit) return false;
        // A range reaching the sheet's end keeps reaching it rather than breaking.
        last = std::min(last, axis.limit - 1);
        return true;
    }
    const std::int64_t end = axis.at + axis.count;
    if (first >= axis.at && last < end) return false;
    first = first < axis.at ? first : first >= end ? first - axis.count : axis.at;
    last = last < axis.at ? last : last >= end ? last - axis.count : axis.at - 1;
    return true;
}

bool EditRule::inBlock(std::int64_t column, std::int64_t row) const {
    return column >= block_.firstColumn && column <= block_.lastColumn && row >= block_.firstRow &&
           row <= block_.lastRow;
}

bool EditRule::mapReference(const CellReference& reference, CellCorner& from, CellCorner& to) const {
    from = reference.oFrom;
    to = reference.oTo;
    switch (kind_) {
        case Kind::Insert:
        case Kind::Delete: {
            const Axis& axis = onRows_ ? rows_ : columns_;
            std::int32_t& a = onRows_ ? from.s32Row : from.s32Column;
            std::int32_t& b = onRows_ ? to.s32Row : to.s32Column;
            std::int64_t first = std::min(a, b);
            std::int64_t last = std::max(a, b);
            const bool aFirst = a <= b;
            if (!shiftSpan(axis, first, last)) return false;
            const std::int64_t newA = aFirst ? first : last;
            const std::int64_t newB = aFirst ? last : first;
            a = static_cast<std::int32_t>(newA);
            b = static_cast<std::int32_t>(newB);
            return true;
        }
        case Kind::Copy: {
            for (CellCorner* corner : {&from, &to}) {
                const std::int64_t column = corner->s32Column + (corner->bColumnAbsolute ? 0 : columns_.count);
                const std::int64_t row = corner->s32Row + (corner->bRowAbsolute ? 0 : rows_.count);
                if (!inside(column, columns_.limit) || !inside(row, rows_.limit)) return false;
                corner->s32Column = static_cast<std::int32_t>(column);
                corner->s32Row = static_cast<std::int32_t>(row);
            }
            return true;
        }
        case Kind::Move:
            if (!inBlock(from.s32Column, from.s32Row) || !inBlock(to.s32Column, to.s32Row)) return true;
            for (CellCorner* corner : {&from, &to}) {
                corner->s32Column = static_cast<std::int32_t>(corner->s32Column + columns_.count);
                corner->s32Row = static_cast<std::int32_t>(corner->s32Row + rows_.count);
            }
            return true;
    }
    return true;
}

bool EditRule::mapCell(std::int32_t& column, std::int32_t& row) const {
    switch (kind_) {
        case Kind::Insert:
        case Kind::Delete: {
            std::int32_t& coordinate = onRows_ ? row : column;
            std::int64_t first = coordinate;
            std::int64_t last = coordinate;
            if (!shiftSpan(onRows_ ? rows_ : columns_, first, last)) return false;
            coordinate = static_cast<std::int32_t>(first);
            return true;
        }
        case Kind::Copy:
            return true;
        case Kind::Move: {
            if (inBlock(column, row)) {
                column = static_cast<std::int32_t>(column + columns_.count);
                row = static_cast<std::int32_t>(row + rows_.count);
                return true;
            }
            // A cell where the block lands is overwritten.
            const std::int64_t fromColumn = column - columns_.count;
            const std::int64_t fromRow = row - rows_.count;
            return !inBlock(fromColumn, fromRow);
        }
    }
    return true;
}

}  // namespace ExpressionParser
