#include "dependencygraph.h"

#include <algorithm>
#include <stdexcept>

#include "graphstate.h"

namespace ExpressionParser {
namespace {

CellRect rectOf(const SpreadSheetHelper::Selection& selection) {
    return CellRect{std::min(selection.s32ColStart(), selection.s32ColEnd()),
                    std::min(selection.s32RowStart(), selection.s32RowEnd()),
                    std::max(selection.s32ColStart(), selection.s32ColEnd()),
                    std::max(selection.s32RowStart(), selection.s32RowEnd())};
}

}  // namespace

DependencyGraph::DependencyGraph(SheetSize size) {
    if (size.s32Rows <= 0 || size.s32Columns <= 0) {
        throw std::invalid_argument("the sheet must have at least one row and one column");
    }
    state_ = std::make_unique<DependencyGraphState>(size);
}

DependencyGraph::~DependencyGraph() = default;
DependencyGraph::DependencyGraph(DependencyGraph&&) noexcept = default;
DependencyGraph& DependencyGraph::operator=(DependencyGraph&&) noexcept = default;

void DependencyGraph::vSetFormula(SheetCell cell, const std::string& formula) {
    if (!state_->inSheet(cell)) {
        throw std::invalid_argument("cannot set a formula in column " + std::to_string(cell.s32Column) + ", row " +
                                    std::to_string(cell.s32Row) + ": outside the sheet");
    }
    state_->set(cell, formula);
}

bool DependencyGraph::bRemoveFormula(SheetCell cell) { return state_->remove(cell); }

bool DependencyGraph::bHasFormula(SheetCell cell) const { return state_->find(cell) != nullptr; }

std::string_view DependencyGraph::oGetFormula(SheetCell cell) const {
    const DependencyGraphState::Node* node = state_->find(cell);
    return node == nullptr ? std::string_view() : state_->text(*node);
}

std::size_t DependencyGraph::u64GetFormulaCount() const { return state_->count(); }

std::vector<SheetCell> DependencyGraph::oGetFormulaCells() const {
    std::vector<SheetCell> cells;
    cells.reserve(state_->count());
    state_->forEachNode([&](const DependencyGraphState::Node& node) { cells.push_back(node.cell); });
    return cells;
}

std::vector<SpreadSheetHelper::Selection> DependencyGraph::oGetPrecedents(SheetCell cell) {
    std::vector<SpreadSheetHelper::Selection> precedents;
    const DependencyGraphState::Node* node = state_->find(cell);
    if (node == nullptr) return precedents;
    for (const CellReference& reference : state_->references(*node)) {
        precedents.emplace_back(std::min(reference.oFrom.s32Row, reference.oTo.s32Row),
                                std::min(reference.oFrom.s32Column, reference.oTo.s32Column),
                                std::max(reference.oFrom.s32Row, reference.oTo.s32Row),
                                std::max(reference.oFrom.s32Column, reference.oTo.s32Column));
    }
    return precedents;
}

std::vector<SheetCell> DependencyGraph::oGetDependents(SheetCell cell) {
    return oGetDependents(SpreadSheetHelper::Selection(cell.s32Row, cell.s32Column, cell.s32Row, cell.s32Column));
}

std::vector<SheetCell> DependencyGraph::oGetDependents(const SpreadSheetHelper::Selection& rectangle) {
    std::vector<SheetCell> dependents;
    const SheetSize size = state_->size();
    CellRect rect = rectOf(rectangle);
    if (rect.lastColumn < 0 || rect.lastRow < 0 || rect.firstColumn >= size.s32Columns || rect.firstRow >= size.s32Rows) {
        return dependents;
    }
    rect = CellRect{std::max(rect.firstColumn, 0), std::max(rect.firstRow, 0),
                    std::min(rect.lastColumn, size.s32Columns - 1), std::min(rect.lastRow, size.s32Rows - 1)};
    state_->newMark();
    state_->forEachDependent(rect, [&](std::uint32_t node) {
        if (state_->mark(node)) dependents.push_back(state_->node(node).cell);
    });
    return dependents;
}

RecalculationOrder DependencyGraph::oGetRecalculationOrder(const std::vector<SheetCell>& changed) {
    std::vector<std::uint32_t> starts;
    for (const SheetCell& cell : changed) {
        const std::uint32_t own = state_->nodeIndex(cell);
        if (own != DependencyGraphState::kNoNode) starts.push_back(own);
        state_->forEachDependent(cell.s32Column, cell.s32Row, [&](std::uint32_t node) { starts.push_back(node); });
    }
    return state_->order(starts);
}

RecalculationOrder DependencyGraph::oGetCalculationOrder() {
    std::vector<std::uint32_t> starts;
    starts.reserve(state_->count());
    for (std::uint32_t node = 0; node < state_->nodeSlots(); ++node) {
        if (state_->node(node).live()) starts.push_back(node);
    }
    return state_->order(starts);
}

std::vector<FormulaChange> DependencyGraph::oInsertRows(std::int32_t row, std::int32_t count) {
    return state_->edit(EditRule::insertRows(row, count, state_->size()), true);
}

std::vector<FormulaChange> DependencyGraph::oDeleteRows(std::int32_t row, std::int32_t count) {
    return state_->edit(EditRule::deleteRows(row, count, state_->size()), false);
}

std::vector<FormulaChange> DependencyGraph::oInsertColumns(std::int32_t column, std::int32_t count) {
    return state_->edit(EditRule::insertColumns(column, count, state_->size()), true);
}

std::vector<FormulaChange> DependencyGraph::oDeleteColumns(std::int32_t column, std::int32_t count) {
    return state_->edit(EditRule::deleteColumns(column, count, state_->size()), false);
}

std::vector<FormulaChange> DependencyGraph::oMoveBlock(const SpreadSheetHelper::Selection& block, std::int32_t rows,
                                                       std::int32_t columns) {
    return state_->edit(EditRule::move(block, rows, columns, state_->size()), false);
}

std::size_t DependencyGraph::u64GetMemoryBytes() const { return state_->bytes(); }

}  // namespace ExpressionParser
