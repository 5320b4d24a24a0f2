#include "graphstate.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ExpressionParser {

void DependencyGraphState::set(SheetCell cell, const std::string& formula) {
    const auto [found, fresh] = nodeOf_.try_emplace(key(cell), kNoNode);
    if (!fresh) {
        release(found->second);
    }
    std::uint32_t index = 0;
    if (!freeNodes_.empty()) {
        index = freeNodes_.back();
        freeNodes_.pop_back();
    } else {
        index = static_cast<std::uint32_t>(nodes_.size());
        nodes_.push_back(Node{cell, 0, 0, 0, false, std::string()});
    }
    found->second = index;
    Node& node = nodes_[index];
    node.cell = cell;
    node.live = true;
    node.text = formula;
    readReferences(node, index);
    compactIfStale();
}

void DependencyGraphState::readReferences(Node& node, std::uint32_t index) {
    CellReferences::vGetReferences(node.text, scratch_);
    node.firstReference = static_cast<std::uint32_t>(references_.size());
    node.referenceCount = static_cast<std::uint32_t>(scratch_.size());
    for (const CellReference& reference : scratch_) {
        const CellRect rect{std::min(reference.oFrom.s32Column, reference.oTo.s32Column),
                            std::min(reference.oFrom.s32Row, reference.oTo.s32Row),
                            std::max(reference.oFrom.s32Column, reference.oTo.s32Column),
                            std::max(reference.oFrom.s32Row, reference.oTo.s32Row)};
        references_.push_back(rect);
        // Only the part inside the sheet can ever hold a value.
        if (rect.firstColumn >= size_.s32Columns || rect.firstRow >= size_.s32Rows) continue;
        index_.add(CellRect{rect.firstColumn, rect.firstRow, std::min(rect.lastColumn, size_.s32Columns - 1),
                            std::min(rect.lastRow, size_.s32Rows - 1)},
                   Reader{index, node.generation});
    }
}

void DependencyGraphState::release(std::uint32_t index) {
    Node& node = nodes_[index];
    node.live = false;
    ++node.generation;
    node.text = std::string();
    staleReferences_ += node.referenceCount;
    freeNodes_.push_back(index);
}

bool DependencyGraphState::remove(SheetCell cell) {
    const auto found = nodeOf_.find(key(cell));
    if (found == nodeOf_.end()) return false;
    release(found->second);
    nodeOf_.erase(found);
    compactIfStale();
    return true;
}

// Once stale references outnumber the live ones, the pool and the index are
// built again from the live formulas, so replacing formulas costs amortised
// constant time and memory stays proportional to what is live.
void DependencyGraphState::compactIfStale() {
    if (staleReferences_ <= references_.size() - staleReferences_ + 1024) return;
    std::vector<CellRect> live;
    live.reserve(references_.size() - staleReferences_);
    index_.clear();
    for (std::uint32_t index = 0; index < nodes_.size(); ++index) {
        Node& node = nodes_[index];
        if (!node.live) continue;
        const std::uint32_t first = static_cast<std::uint32_t>(live.size());
        for (std::uint32_t i = 0; i < node.referenceCount; ++i) {
            const CellRect& rect = references_[node.firstReference + i];
            live.push_back(rect);
            if (rect.firstColumn >= size_.s32Columns || rect.firstRow >= size_.s32Rows) continue;
            index_.add(CellRect{rect.firstColumn, rect.firstRow, std::min(rect.lastColumn, size_.s32Columns - 1),
                                std::min(rect.lastRow, size_.s32Rows - 1)},
                       Reader{index, node.generation});
        }
        node.firstReference = first;
    }
    references_ = std::move(live);
    staleReferences_ = 0;
}

const DependencyGraphState::Node* DependencyGraphState::find(SheetCell cell) const {
    const std::uint32_t index = nodeIndex(cell);
    return index == kNoNode ? nullptr : &nodes_[index];
}

std::uint32_t DependencyGraphState::nodeIndex(SheetCell cell) const {
    const auto found = nodeOf_.find(key(cell));
    return found == nodeOf_.end() ? kNoNode : found->second;
}

void DependencyGraphState::newMark() {
    if (marks_.size() < nodes_.size()) marks_.resize(nodes_.size(), mark_);
    if (++mark_ == 0) {
        std::fill(marks_.begin(), marks_.end(), 0);
        mark_ = 1;
    }
}

bool DependencyGraphState::mark(std::uint32_t node) {
    if (marks_[node] == mark_) return false;
    marks_[node] = mark_;
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
    for (const Node& node : nodes_) {
        if (!node.live) continue;
        SheetCell to = node.cell;
        if (rule.mapCell(to.s32Column, to.s32Row)) continue;
        if (insertion) {
            throw std::invalid_argument("cannot insert: the formula in " +
                                        SpreadSheetHelper::oGetLetterByIdx(node.cell.s32Column) +
                                        std::to_string(node.cell.s32Row + 1LL) + " would leave the sheet");
        }
    }
    for (const Node& node : nodes_) {
        if (!node.live) continue;
        SheetCell to = node.cell;
        if (!rule.mapCell(to.s32Column, to.s32Row)) {
            changes.push_back(FormulaChange{node.cell, node.cell, true, node.text});
            continue;
        }
        std::string text = applyEdit(node.text, rule);
        if (!(to == node.cell) || text != node.text) changes.push_back(FormulaChange{node.cell, to, false, text});
        kept.push_back(Kept{to, std::move(text)});
    }
    *this = DependencyGraphState(size_);
    for (const Kept& formula : kept) set(formula.cell, formula.text);
    std::sort(changes.begin(), changes.end(), [](const FormulaChange& a, const FormulaChange& b) {
        return a.oFrom.s32Row != b.oFrom.s32Row ? a.oFrom.s32Row < b.oFrom.s32Row : a.oFrom.s32Column < b.oFrom.s32Column;
    });
    return changes;
}

std::size_t DependencyGraphState::bytes() const {
    std::size_t total = sizeof(*this) + nodes_.capacity() * sizeof(Node) + freeNodes_.capacity() * sizeof(std::uint32_t);
    // Texts longer than the string's own inline buffer live on the heap.
    const std::size_t inlineCapacity = std::string().capacity();
    for (const Node& node : nodes_) {
        if (node.text.capacity() > inlineCapacity) total += node.text.capacity() + 1;
    }
    total += nodeOf_.bucket_count() * sizeof(void*) + nodeOf_.size() * (sizeof(void*) + 2 * sizeof(std::uint64_t));
    total += references_.capacity() * sizeof(CellRect) + marks_.capacity() * sizeof(std::uint32_t);
    return total + index_.bytes();
}

}  // namespace ExpressionParser
