#ifndef CELLFORMULA_GRAPHSTATE_H
#define CELLFORMULA_GRAPHSTATE_H

// The data behind DependencyGraph. Internal to the library; not installed.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cellreferences.h"
#include "dependencygraph.h"
#include "dependencyindex.h"
#include "editrule.h"

namespace ExpressionParser {

class DependencyGraphState {
public:
    explicit DependencyGraphState(SheetSize size) : size_(size) {}

    struct Node {
        SheetCell cell;
        std::uint32_t firstReference;  // into references_
        std::uint32_t referenceCount;
        std::uint32_t generation;  // index entries of an older generation are stale
        bool live;
        std::string text;
    };

    SheetSize size() const { return size_; }
    bool inSheet(SheetCell cell) const {
        return cell.s32Column >= 0 && cell.s32Row >= 0 && cell.s32Column < size_.s32Columns && cell.s32Row < size_.s32Rows;
    }

    void set(SheetCell cell, const std::string& formula);
    bool remove(SheetCell cell);
    const Node* find(SheetCell cell) const;
    std::size_t count() const { return nodeOf_.size(); }
    template <class Visit>
    void forEachNode(Visit&& visit) const {
        for (const Node& node : nodes_) {
            if (node.live) visit(node);
        }
    }
    const CellRect* references(const Node& node) const { return references_.data() + node.firstReference; }

    // Calls visit(node index) for each formula reading the cell or meeting the
    // rectangle, possibly more than once.
    template <class Visit>
    void forEachDependent(std::int32_t column, std::int32_t row, Visit&& visit) {
        index_.forEachReader(column, row, [&](Reader reader) {
            if (current(reader)) visit(reader.node);
        });
    }
    template <class Visit>
    void forEachDependent(const CellRect& rect, Visit&& visit) {
        index_.forEachReader(rect, [&](Reader reader) {
            if (current(reader)) visit(reader.node);
        });
    }
    const Node& node(std::uint32_t index) const { return nodes_[index]; }
    std::uint32_t nodeIndex(SheetCell cell) const;  // kNoNode when none
    std::uint32_t nodeSlots() const { return static_cast<std::uint32_t>(nodes_.size()); }

    // Each visited node's evaluation order; see calculationorder.cpp.
    RecalculationOrder order(const std::vector<std::uint32_t>& starts);
    // A fresh mark for one walk over the nodes; marked(n) tells whether n has it.
    void newMark();
    bool mark(std::uint32_t node);  // false when it was marked already

    std::vector<FormulaChange> edit(const EditRule& rule, bool insertion);
    std::size_t bytes() const;

    static constexpr std::uint32_t kNoNode = 0xFFFFFFFFu;

private:
    static std::uint64_t key(SheetCell cell) {
        return (std::uint64_t(std::uint32_t(cell.s32Column)) << 32) | std::uint32_t(cell.s32Row);
    }
    bool current(Reader reader) const {
        const Node& node = nodes_[reader.node];
        return node.live && node.generation == reader.generation;
    }
    void readReferences(Node& node, std::uint32_t index);
    void release(std::uint32_t index);
    void compactIfStale();

    SheetSize size_;
    std::vector<Node> nodes_;
    std::vector<std::uint32_t> freeNodes_;
    std::unordered_map<std::uint64_t, std::uint32_t> nodeOf_;
    std::vector<CellRect> references_;
    std::size_t staleReferences_ = 0;
    DependencyIndex index_;
    std::vector<CellReference> scratch_;  // the references of the formula being read

    // Scratch of the walks: a node is marked when marks_[node] == mark_.
    std::vector<std::uint32_t> marks_;
    std::uint32_t mark_ = 0;
    std::vector<std::uint32_t> walkVisit_;
    std::vector<std::uint32_t> walkLow_;
    std::vector<std::uint8_t> walkOnStack_;  // all 0 between walks
};

}  // namespace ExpressionParser

#endif
