#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "parserdriver.h"
#include "spreadsheethelper.h"
#include "sstringify.h"
#include "variable.h"

namespace ExpressionParser {
namespace {

// Corners are ints; the loops run in 64 bits so that a last column of
// INT_MAX cannot overflow the counter.
struct Rectangle {
    std::int64_t firstColumn;
    std::int64_t firstRow;
    std::int64_t lastColumn;
    std::int64_t lastRow;

    // At most 2^31 by 2^31, so the product fits 64 bits.
    std::uint64_t cellCount() const {
        return static_cast<std::uint64_t>(lastColumn - firstColumn + 1) *
               static_cast<std::uint64_t>(lastRow - firstRow + 1);
    }
};

Rectangle orderedRectangle(int fromColumn, int fromRow, int toColumn, int toRow) {
    return Rectangle{std::min(fromColumn, toColumn), std::min(fromRow, toRow), std::max(fromColumn, toColumn),
                     std::max(fromRow, toRow)};
}

std::vector<std::string> cellNamesRowByRow(const Rectangle& cells) {
    // Column letters are the same in every row: work them out once.
    std::vector<std::string> letters;
    for (std::int64_t column = cells.firstColumn; column <= cells.lastColumn; ++column) {
        letters.push_back(SpreadSheetHelper::oGetLetterByIdx(static_cast<int>(column)));
    }
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(cells.cellCount()));
    for (std::int64_t row = cells.firstRow; row <= cells.lastRow; ++row) {
        const std::string rowNumber = QuandelUtils::sstringify(static_cast<int>(row + 1));
        for (const std::string& columnLetters : letters) names.push_back(columnLetters + rowNumber);
    }
    return names;
}

}  // namespace

std::vector<ASTNode*> ParserDriver::oGetMultipleCellsVarList(const std::string& from, const std::string& to) {
    int fromColumn = 0;
    int fromRow = 0;
    int toColumn = 0;
    int toRow = 0;
    const auto readCorner = [this](const std::string& corner, int& column, int& row) {
        if (SpreadSheetHelper::s8CreateColumnLine(corner, column, row) == 0) return true;
        error("Invalid cell name: \"" + corner + "\"");
        return false;
    };
    if (!readCorner(from, fromColumn, fromRow) || !readCorner(to, toColumn, toRow)) return {};
    const Rectangle cells = orderedRectangle(fromColumn, fromRow, toColumn, toRow);
    // The budget is checked before any cell is named or asked for, so a
    // formula repeating a large range costs nothing beyond its limit.
    const std::uint64_t count = cells.cellCount();
    const std::uint64_t earlier = formulaRangeCells();
    const std::uint64_t total = count > UINT64_MAX - earlier ? UINT64_MAX : earlier + count;
    if (total > u64GetMaxRangeCells()) {
        const std::string formulaTotal = earlier == 0 ? "" : ", " + std::to_string(total) + " in the formula";
        error("Range too large: \"" + from + ":" + to + "\" has " + std::to_string(count) + " cells" +
              formulaTotal + ", more than the limit of " + std::to_string(u64GetMaxRangeCells()));
        return {};
    }
    addFormulaRangeCells(count);

    const std::vector<std::string> names = cellNamesRowByRow(cells);
    std::vector<ASTNode*> nodes;
    nodes.reserve(names.size());
    try {
        for (const std::string& name : names) nodes.push_back(new CNVariable(getVariableFrom(name)));
    } catch (...) {
        // The host's source may throw part way; the nodes made so far are ours to free.
        for (ASTNode* node : nodes) delete node;
        throw;
    }
    return nodes;
}

}  // namespace ExpressionParser
