#ifndef CELLFORMULA_DEPENDENCYGRAPH_H
#define CELLFORMULA_DEPENDENCYGRAPH_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "spreadsheethelper.h"
#include "structuraledit.h"

namespace ExpressionParser {

// A cell by indices from 0: "B3" is column 1, row 2.
struct SheetCell {
    std::int32_t s32Column;
    std::int32_t s32Row;
};

inline bool operator==(const SheetCell& a, const SheetCell& b) {
    return a.s32Column == b.s32Column && a.s32Row == b.s32Row;
}

// The formulas to evaluate again, each after every formula it reads, and the
// cycles among them: each cycle's cells once, left out of oOrder. A formula
// that reads a cycle without being part of it stays in oOrder, after it.
struct RecalculationOrder {
    std::vector<SheetCell> oOrder;
    std::vector<std::vector<SheetCell>> oCycles;
};

// A formula that a structural edit moved, rewrote or removed; the host keeps
// oText at oTo, or drops the formula at oFrom when bRemoved.
struct FormulaChange {
    SheetCell oFrom;
    SheetCell oTo;
    bool bRemoved;
    std::string oText;
};

class DependencyGraphState;

// Which formula of a sheet reads which cells, for a host that evaluates its
// own formulas: it answers what a formula reads, who reads a cell, and in
// what order to evaluate after a change. It keeps each formula's text and its
// references as written (a range stays one rectangle however large), stores
// no values and asks the host for none. References are read as the parser
// reads them, also from a formula with a syntax error, so the host learns who
// depends on a broken cell. Every operation is iterative (no depth limit) and
// linear in what it visits. One graph serves one thread at a time; even its
// queries update internal scratch data.
class DependencyGraph {
public:
    explicit DependencyGraph(SheetSize size = SheetSize{});
    ~DependencyGraph();
    DependencyGraph(DependencyGraph&&) noexcept;
    DependencyGraph& operator=(DependencyGraph&&) noexcept;
    DependencyGraph(const DependencyGraph&) = delete;
    DependencyGraph& operator=(const DependencyGraph&) = delete;

    // Sets or replaces the formula of a cell inside the sheet (else
    // std::invalid_argument); any text is accepted.
    void vSetFormula(SheetCell cell, const std::string& formula);
    // False when the cell held no formula.
    bool bRemoveFormula(SheetCell cell);
    bool bHasFormula(SheetCell cell) const;
    // The cell's formula text (empty for a cell without formula); valid until the graph next changes.
    std::string_view oGetFormula(SheetCell cell) const;
    std::size_t u64GetFormulaCount() const;
    // Every formula cell, in no particular order.
    std::vector<SheetCell> oGetFormulaCells() const;

    // The references of the cell's formula in text order, each as its
    // rectangle (a single cell as a 1 x 1 one); empty for a cell without formula.
    std::vector<SpreadSheetHelper::Selection> oGetPrecedents(SheetCell cell);
    // The formula cells that read the cell, or any cell of the rectangle, directly; each once.
    std::vector<SheetCell> oGetDependents(SheetCell cell);
    std::vector<SheetCell> oGetDependents(const SpreadSheetHelper::Selection& rectangle);

    // After the values or formulas of `changed` changed: every formula that
    // depends on them directly or through others, changed cells holding a
    // formula included.
    RecalculationOrder oGetRecalculationOrder(const std::vector<SheetCell>& changed);
    // Every formula of the sheet, as for a first evaluation.
    RecalculationOrder oGetCalculationOrder();

    // Structural edits (see StructuralEdit): formula cells move and every
    // stored formula is rewritten; the result lists each formula whose place or
    // text changed and each one removed (in deleted rows or columns, or under
    // a moved block). An edit that makes no sense, or an insertion that would
    // push a formula off the sheet, throws std::invalid_argument and changes nothing.
    std::vector<FormulaChange> oInsertRows(std::int32_t row, std::int32_t count);
    std::vector<FormulaChange> oDeleteRows(std::int32_t row, std::int32_t count);
    std::vector<FormulaChange> oInsertColumns(std::int32_t column, std::int32_t count);
    std::vector<FormulaChange> oDeleteColumns(std::int32_t column, std::int32_t count);
    std::vector<FormulaChange> oMoveBlock(const SpreadSheetHelper::Selection& block, std::int32_t rows,
                                          std::int32_t columns);

    // The bytes the graph holds (texts, references, indices), as an estimate
    // from its containers' sizes.
    std::size_t u64GetMemoryBytes() const;

private:
    std::unique_ptr<DependencyGraphState> state_;
};

}  // namespace ExpressionParser

#endif
