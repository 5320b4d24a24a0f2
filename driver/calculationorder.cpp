// The evaluation order of the formulas reachable from some start formulas:
// Tarjan's strongly connected components, walked with an explicit stack so
// that a chain of a million formulas needs no deeper call stack than one.
#include <algorithm>

#include "graphstate.h"

namespace ExpressionParser {

RecalculationOrder DependencyGraphState::order(const std::vector<std::uint32_t>& starts) {
    // Visit numbers and low links by node, valid for nodes marked in this
    // walk, so a walk over a few formulas does not touch all of them.
    newMark();
    const auto unvisited = [&](std::uint32_t node) { return scratchOf_[node].mark != mark_; };
    // The readers of every formula on the walk's path; frame i's readers are
    // readers[firstReader, endReader).
    std::vector<std::uint32_t>& readers = walk_.readers;
    std::vector<WalkFrame>& frames = walk_.frames;
    std::vector<std::uint32_t>& stack = walk_.stack;
    // Components as they complete (readers first), each a run of `members`.
    std::vector<std::uint32_t>& members = walk_.members;
    std::vector<std::size_t>& componentEnds = walk_.componentEnds;
    std::vector<std::uint8_t>& componentIsCycle = walk_.componentIsCycle;
    for (auto* list : {&readers, &stack, &members}) list->clear();
    frames.clear();
    componentEnds.clear();
    componentIsCycle.clear();
    std::uint32_t counter = 0;

    const auto enter = [&](std::uint32_t node) {
        mark(node);
        NodeScratch& scratch = scratchOf_[node];
        scratch.visit = scratch.low = counter++;
        stack.push_back(node);
        scratch.onStack = 1;
        const std::size_t first = readers.size();
        forEachDependent(nodes_[node].cell.s32Column, nodes_[node].cell.s32Row,
                         [&](std::uint32_t reader) { readers.push_back(reader); });
        frames.push_back(WalkFrame{node, first, first, readers.size(), false});
    };

    for (const std::uint32_t start : starts) {
        if (!unvisited(start)) continue;
        enter(start);
        while (!frames.empty()) {
            WalkFrame& frame = frames.back();
            if (frame.nextReader < frame.endReader) {
                const std::uint32_t reader = readers[frame.nextReader++];
                if (reader == frame.node) frame.readsItself = true;
                if (unvisited(reader)) {
                    enter(reader);  // invalidates `frame`
                } else if (scratchOf_[reader].onStack != 0) {
                    scratchOf_[frame.node].low = std::min(scratchOf_[frame.node].low, scratchOf_[reader].visit);
                }
                continue;
            }
            const WalkFrame done = frame;
            frames.pop_back();
            readers.resize(done.firstReader);
            const NodeScratch& finished = scratchOf_[done.node];
            if (!frames.empty()) {
                NodeScratch& parent = scratchOf_[frames.back().node];
                parent.low = std::min(parent.low, finished.low);
            }
            if (finished.low != finished.visit) continue;
            const std::size_t begin = members.size();
            std::uint32_t member = 0;
            do {
                member = stack.back();
                stack.pop_back();
                scratchOf_[member].onStack = 0;
                members.push_back(member);
            } while (member != done.node);
            componentEnds.push_back(members.size());
            componentIsCycle.push_back(members.size() - begin > 1 || done.readsItself);
        }
    }

    // Components complete after everything that reads them, so the reverse
    // lists every formula after what it reads.
    RecalculationOrder result;
    result.oOrder.reserve(members.size());
    for (std::size_t component = componentEnds.size(); component-- > 0;) {
        const std::size_t begin = component == 0 ? 0 : componentEnds[component - 1];
        const std::size_t end = componentEnds[component];
        if (!componentIsCycle[component]) {
            result.oOrder.push_back(nodes_[members[begin]].cell);
            continue;
        }
        std::vector<SheetCell> cycle;
        cycle.reserve(end - begin);
        for (std::size_t i = end; i-- > begin;) cycle.push_back(nodes_[members[i]].cell);
        result.oCycles.push_back(std::move(cycle));
    }
    return result;
}

}  // namespace ExpressionParser
