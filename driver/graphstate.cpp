#include "graphstate.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ExpressionParser {

void DependencyGraphState::set(SheetCell cell, const std::string& formula) {
    bool fresh = false;
    std::uint32_t& found = nodeOf_.emplace(key(cell), kNoNode, fresh);
    if (!fresh) release(found);
    std::uint32_t index = 0;
    if (!freeNodes_.empty()) {
        index = freeNodes_.back();
        freeNodes_.pop_back();
    } else {
        index = static_cast<std::uint32_t>(nodes_.size());
        nodes_.push_back(Node{cell, 0, 0, 0});
    }
    found = index;
    Node& node = nodes_[index];
    node.cell = cell;
    ++node.generation;
    node.textBegin = texts_.append(formula);
    node.textLength = static_cast<std::uint32_t>(formula.size());
    this->index(formula, index);
    compactIfStale();
}

void DependencyGraphState::index(const std::string& formula, std::uint32_t node) {
    reader_.read(formula, scratch_);
    for (const CellReference& reference : scratch_) {
        const CellRect rect{std::min(reference.oFrom.s32Column, reference.oTo.s32Column),
                            std::min(reference.oFrom.s32Row, reference.oTo.s32Row),
                            std::max(reference.oFrom.s32Column, reference.oTo.s32Column),
                            std::max(reference.oFrom.s32Row, reference.oTo.s32Row)};
        // Only the part inside the sheet can ever hold a value.
        if (rect.firstColumn >= size_.s32Columns || rect.firstRow >= size_.s32Rows) continue;
        index_.add(CellRect{rect.firstColumn, rect.firstRow, std::min(rect.lastColumn, size_.s32Columns - 1),
                            std::min(rect.lastRow, size_.s32Rows - 1)},
                   Reader{node, nodes_[node].generation});
    }
}

const std::vector<CellReference>& DependencyGraphState::references(const Node& node) {
    scratchText_.assign(text(node));
    reader_.read(scratchText_, scratch_);
    return scratch_;
}

void DependencyGraphState::release(std::uint32_t index) {
    Node& node = nodes_[index];
    ++node.generation;
    staleBytes_ += node.textLength;
    freeNodes_.push_back(index);
}

bool DependencyGraphState::remove(SheetCell cell) {
    const std::uint32_t* found = nodeOf_.find(key(cell));
    if (found == nullptr) return false;
    release(*found);
    nodeOf_.erase(key(cell));
    compactIfStale();
    return true;
}

// Once the texts of replaced formulas outweigh the live ones, the text store
// and the index are built again from the live formulas, so replacing
// formulas costs amortised constant time and memory stays proportional to
// what is live.
void DependencyGraphState::compactIfStale() {
    if (staleBytes_ <= texts_.size() - staleBytes_ + 4096) return;
    TextBlocks live;
    index_.clear();
    for (std::uint32_t at = 0; at < nodes_.size(); ++at) {
        Node& node = nodes_[at];
        if (!node.live()) continue;
        scratchText_.assign(text(node));
        node.textBegin = live.append(scratchText_);
        index(scratchText_, at);
    }
    texts_ = std::move(live);
    staleBytes_ = 0;
}

const DependencyGraphState::Node* DependencyGraphState::find(SheetCell cell) const {
    const std::uint32_t index = nodeIndex(cell);
    return index == kNoNode ? nullptr : &nodes_[index];
}

std::uint32_t DependencyGraphState::nodeIndex(SheetCell cell) const {
    const std::uint32_t* found = nodeOf_.find(key(cell));
    return found == nullptr ? kNoNode : *found;
}

void DependencyGraphState::clear() {
    nodes_.clear();
    freeNodes_.clear();
    nodeOf_.clear();
    texts_.clear();
    staleBytes_ = 0;
    index_.clear();
    scratchOf_.clear();
    mark_ = 0;
}

void DependencyGraphState::newMark() {
    if (scratchOf_.size() < nodes_.size()) scratchOf_.resize(nodes_.size(), NodeScratch{mark_, 0, 0, 0});
    if (++mark_ == 0) {
        for (NodeScratch& scratch : scratchOf_) scratch.mark = 0;
        mark_ = 1;
    }
}

bool DependencyGraphState::mark(std::uint32_t node) {
    if (scratchOf_[node].mark == mark_) return false;
    scratchOf_[node].mark = mark_;
    return true;
}

std::vector<FormulaChange> DependencyGraphState::edit(const EditRule& rule, bool insertion) {
    struct Kept {
        SheetCell cell;
        std::string text;
    };
    std::vector<FormulaChange> changes;
    std::vector<Kept> kept;
    kept.reserve(nodeOf_.size());
    for (std::size_t at = 0; at < nodes_.size(); ++at) {
        const Node& node = nodes_[at];
        if (!node.live()) continue;
        SheetCell to = node.cell;
        if (rule.mapCell(to.s32Column, to.s32Row)) continue;
        if (insertion) {
            throw std::invalid_argument("cannot insert: the formula in " +
                                        SpreadSheetHelper::oGetLetterByIdx(node.cell.s32Column) +
                                        std::to_string(node.cell.s32Row + 1LL) + " would leave the sheet");
        }
    }
    for (std::size_t at = 0; at < nodes_.size(); ++at) {
        const Node& node = nodes_[at];
        if (!node.live()) continue;
        SheetCell to = node.cell;
        if (!rule.mapCell(to.s32Column, to.s32Row)) {
            changes.push_back(FormulaChange{node.cell, node.cell, true, std::string(text(node))});
            continue;
        }
        std::string formula = applyEdit(std::string(text(node)), rule);
        if (!(to == node.cell) || formula != text(node)) changes.push_back(FormulaChange{node.cell, to, false, formula});
        kept.push_back(Kept{to, std::move(formula)});
    }
    clear();
    for (const Kept& formula : kept) set(formula.cell, formula.text);
    std::sort(changes.begin(), changes.end(), [](const FormulaChange& a, const FormulaChange& b) {
        return a.oFrom.s32Row != b.oFrom.s32Row ? a.oFrom.s32Row < b.oFrom.s32Row : a.oFrom.s32Column < b.oFrom.s32Column;
    });
    return changes;
}

std::size_t DependencyGraphState::bytes() const {
    std::size_t total = sizeof(*this) + nodes_.bytes() + freeNodes_.capacity() * sizeof(std::uint32_t);
    total += texts_.bytes();
    total += nodeOf_.bytes();
    total += scratchOf_.capacity() * sizeof(NodeScratch);
    return total + index_.bytes();
}

}  // namespace ExpressionParser
