#ifndef CELLFORMULA_GRAPHSTATE_H
#define CELLFORMULA_GRAPHSTATE_H

// The data behind DependencyGraph. Internal to the library; not installed.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "blocklist.h"
#include "cellmap.h"
#include "cellreferences.h"
#include "dependencygraph.h"
#include "dependencyindex.h"
#include "editrule.h"
#include "referencereader.h"

namespace ExpressionParser {

class DependencyGraphState {
public:
    explicit DependencyGraphState(SheetSize size) : size_(size) {}

    // A formula cell. Its text lies in the shared text store; its references
    // are read again from there when asked for, so only the index holds them.
    struct Node {
        SheetCell cell;
        std::uint64_t textBegin;
        std::uint32_t textLength;
        // Odd while the cell holds this formula, even once it is gone; index
        // entries of another generation are stale.
        std::uint32_t generation;
        bool live() const { return (generation & 1) != 0; }
    };

    SheetSize size() const { return size_; }
    bool inSheet(SheetCell cell) const {
        return cell.s32Column >= 0 && cell.s32Row >= 0 && cell.s32Column < size_.s32Columns && cell.s32Row < size_.s32Rows;
    }

    void set(SheetCell cell, const std::string& formula);
    bool remove(SheetCell cell);
    const Node* find(SheetCell cell) const;
    std::size_t count() const { return nodeOf_.size(); }
    // Forgets every formula.
    void clear();
    template <class Visit>
    void forEachNode(Visit&& visit) const {
        for (std::size_t at = 0; at < nodes_.size(); ++at) {
            if (nodes_[at].live()) visit(nodes_[at]);
        }
    }
    std::string_view text(const Node& node) const { return texts_.view(node.textBegin, node.textLength); }
    // The references of the node's formula, as written.
    const std::vector<CellReference>& references(const Node& node);

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
    static std::uint64_t key(SheetCell cell) { return CellMap::key(cell.s32Column, cell.s32Row); }
    bool current(Reader reader) const {
        const Node& node = nodes_[reader.node];
        return node.generation == reader.generation;
    }
    void index(const std::string& formula, std::uint32_t node);
    void release(std::uint32_t index);
    void compactIfStale();

    SheetSize size_;
    BlockList<Node> nodes_;
    std::vector<std::uint32_t> freeNodes_;
    CellMap nodeOf_;
    TextBlocks texts_;  // every formula's text, one after the other
    std::size_t staleBytes_ = 0;  // of replaced and removed formulas
    DependencyIndex index_;
    ReferenceReader reader_;
    std::vector<CellReference> scratch_;  // the references of the formula being read
    std::string scratchText_;

    // Scratch of the walks, one record per node so that a visit touches one
    // place: a node is marked when its mark == mark_; the rest is valid for
    // marked nodes only (onStack is 0 between walks).
    struct NodeScratch {
        std::uint32_t mark;
        std::uint32_t visit;
        std::uint32_t low;
        std::uint32_t onStack;
    };
    std::vector<NodeScratch> scratchOf_;
    std::uint32_t mark_ = 0;
    // The lists of one ordering walk, kept so that a walk allocates nothing
    // once they have grown; see calculationorder.cpp.
    struct WalkFrame {
        std::uint32_t node;
        std::size_t firstReader;
        std::size_t nextReader;
        std::size_t endReader;
        bool readsItself;
    };
    struct WalkLists {
        std::vector<std::uint32_t> readers;
        std::vector<WalkFrame> frames;
        std::vector<std::uint32_t> stack;
        std::vector<std::uint32_t> members;
        std::vector<std::size_t> componentEnds;
        std::vector<std::uint8_t> componentIsCycle;
    };
    WalkLists walk_;
};

}  // namespace ExpressionParser

#endif
