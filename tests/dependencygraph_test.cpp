#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "dependencygraph.h"

using ExpressionParser::DependencyGraph;
using ExpressionParser::FormulaChange;
using ExpressionParser::RecalculationOrder;
using ExpressionParser::SheetCell;
using ExpressionParser::SheetSize;
using SpreadSheetHelper::Selection;

namespace {

SheetCell cell(const char* name) {
    int column = 0;
    int row = 0;
    EXPECT_EQ(SpreadSheetHelper::s8CreateColumnLine(name, column, row), 0) << name;
    return SheetCell{column, row};
}

std::string nameOf(SheetCell c) { return SpreadSheetHelper::oGetLetterByIdx(c.s32Column) + std::to_string(c.s32Row + 1); }

std::string names(std::vector<SheetCell> cells, bool sorted = true) {
    std::vector<std::string> texts;
    for (const SheetCell& c : cells) texts.push_back(nameOf(c));
    if (sorted) std::sort(texts.begin(), texts.end());
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : " ") + text;
    return joined;
}

DependencyGraph sheet(const std::vector<std::pair<const char*, const char*>>& formulas) {
    DependencyGraph graph;
    for (const auto& [at, text] : formulas) graph.vSetFormula(cell(at), text);
    return graph;
}

TEST(DependencyGraph, PrecedentsAreTheReferencesAsWritten) {
    DependencyGraph graph = sheet({{"E1", "=SUM(B3:A1)+C1*$D$2&\"A9\"+input(\"A8\")"}, {"E2", "=A1+"}});
    std::vector<std::string> rects;
    for (const Selection& s : graph.oGetPrecedents(cell("E1"))) {
        rects.push_back(std::to_string(s.s32ColStart()) + "," + std::to_string(s.s32RowStart()) + ":" +
                        std::to_string(s.s32ColEnd()) + "," + std::to_string(s.s32RowEnd()));
    }
    EXPECT_EQ(rects, (std::vector<std::string>{"0,0:1,2", "2,0:2,0", "3,1:3,1"}));
    // A formula with a syntax error keeps the references it has.
    EXPECT_EQ(graph.oGetPrecedents(cell("E2")).size(), 1u);
    EXPECT_TRUE(graph.oGetPrecedents(cell("Z9")).empty());
}

TEST(DependencyGraph, DependentsOfACellOrARectangle) {
    DependencyGraph graph = sheet({{"C1", "=A1+A1"},
                                   {"C2", "=SUM(A1:A100)"},
                                   {"C3", "=SUM(A1:XFD1048576)"},
                                   {"C4", "=B7"},
                                   {"C5", "=SUM(B1:B70)"},
                                   {"C6", "=A1:B2"}});
    struct Case { Selection area; const char* dependents; };
    const Case kCases[] = {
        {Selection(0, 0, 0, 0), "C1 C2 C3 C6"},   // A1, each reader once
        {Selection(99, 0, 99, 0), "C2 C3"},       // A100
        {Selection(100, 0, 100, 0), "C3"},        // A101: only the sheet-wide range
        {Selection(6, 1, 6, 1), "C3 C4 C5"},      // B7
        {Selection(5, 1, 8, 3), "C3 C4 C5"},      // B6:D9
        {Selection(1048575, 16383, 1048575, 16383), "C3"},
        {Selection(2000000, 0, 2000000, 0), ""},  // beyond the sheet
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.dependents);
        EXPECT_EQ(names(graph.oGetDependents(c.area)), c.dependents);
    }
    graph.vSetFormula(cell("C1"), "=B1");  // a replaced formula no longer reads A1
    EXPECT_EQ(names(graph.oGetDependents(cell("A1"))), "C2 C3 C6");
    EXPECT_TRUE(graph.bRemoveFormula(cell("C2")));
    EXPECT_FALSE(graph.bRemoveFormula(cell("C2")));
    EXPECT_EQ(names(graph.oGetDependents(cell("A1"))), "C3 C6");
    EXPECT_FALSE(graph.bHasFormula(cell("C2")));
    EXPECT_EQ(graph.oGetFormula(cell("C1")), "=B1");
}

TEST(DependencyGraph, RecalculationOrderAndCycles) {
    DependencyGraph graph = sheet({{"B1", "=A1*2"},
                                   {"B2", "=B1+SUM(A1:A3)"},
                                   {"B3", "=B2+B1"},
                                   {"B4", "=A9"},
                                   {"C1", "=C2+A2"},
                                   {"C2", "=C1"},
                                   {"C3", "=C2*2"},
                                   {"D1", "=D1+1"}});
    RecalculationOrder order = graph.oGetRecalculationOrder({cell("A1")});
    EXPECT_EQ(names(order.oOrder, false), "B1 B2 B3");
    EXPECT_TRUE(order.oCycles.empty());
    order = graph.oGetRecalculationOrder({cell("A2")});
    EXPECT_EQ(names(order.oOrder, false), "B2 B3 C3");  // C3 reads the cycle and follows it
    ASSERT_EQ(order.oCycles.size(), 1u);
    EXPECT_EQ(names(order.oCycles[0]), "C1 C2");
    order = graph.oGetRecalculationOrder({cell("B4")});  // a changed formula is evaluated itself
    EXPECT_EQ(names(order.oOrder, false), "B4");
    order = graph.oGetCalculationOrder();
    EXPECT_EQ(order.oOrder.size(), 5u);
    ASSERT_EQ(order.oCycles.size(), 2u);
    std::vector<std::string> cycles{names(order.oCycles[0]), names(order.oCycles[1])};
    std::sort(cycles.begin(), cycles.end());
    EXPECT_EQ(cycles, (std::vector<std::string>{"C1 C2", "D1"}));
}

// Random sheets of 5 x 5 cells: the order holds every formula not in a cycle
// after each formula it reaches from, and the cycles are exactly the groups
// of cells that reach each other (or a cell that reads itself).
TEST(DependencyGraph, OrderAgreesWithReachability) {
    constexpr int kSide = 5;
    constexpr int kCells = kSide * kSide;
    std::mt19937 random(7);
    for (int trial = 0; trial < 300; ++trial) {
        DependencyGraph graph(SheetSize{kSide, kSide});
        bool reads[kCells][kCells] = {};
        bool formula[kCells] = {};
        for (int at = 0; at < kCells; ++at) {
            if (random() % 3 == 0) continue;
            formula[at] = true;
            const int c1 = int(random() % kSide), r1 = int(random() % kSide);
            const int c2 = std::min(kSide - 1, c1 + int(random() % 2)), r2 = std::min(kSide - 1, r1 + int(random() % 3));
            const int c3 = int(random() % kSide), r3 = int(random() % kSide);
            const std::string text = "=SUM(" + nameOf({c1, r1}) + ":" + nameOf({c2, r2}) + ")+" + nameOf({c3, r3});
            graph.vSetFormula(SheetCell{at % kSide, at / kSide}, text);
            for (int c = c1; c <= c2; ++c) {
                for (int r = r1; r <= r2; ++r) reads[at][r * kSide + c] = true;
            }
            reads[at][r3 * kSide + c3] = true;
        }
        // reach[a][b]: a formula at a reads b, directly or through formulas.
        bool reach[kCells][kCells];
        for (int a = 0; a < kCells; ++a) {
            for (int b = 0; b < kCells; ++b) reach[a][b] = formula[a] && formula[b] && reads[a][b];
        }
        for (int k = 0; k < kCells; ++k) {
            for (int a = 0; a < kCells; ++a) {
                for (int b = 0; b < kCells; ++b) reach[a][b] = reach[a][b] || (reach[a][k] && reach[k][b]);
            }
        }
        const RecalculationOrder order = graph.oGetCalculationOrder();
        std::vector<int> position(kCells, -1);
        for (std::size_t i = 0; i < order.oOrder.size(); ++i) {
            position[order.oOrder[i].s32Row * kSide + order.oOrder[i].s32Column] = int(i);
        }
        std::set<std::set<int>> cycles;
        for (const auto& cycle : order.oCycles) {
            std::set<int> members;
            for (const SheetCell& c : cycle) members.insert(c.s32Row * kSide + c.s32Column);
            cycles.insert(members);
        }
        std::set<std::set<int>> expectedCycles;
        for (int a = 0; a < kCells; ++a) {
            if (!formula[a]) continue;
            if (!reach[a][a]) {
                ASSERT_GE(position[a], 0) << trial;
                for (int b = 0; b < kCells; ++b) {
                    if (reach[a][b] && position[b] >= 0) {
                        EXPECT_LT(position[b], position[a]) << trial;
                    }
                }
                continue;
            }
            std::set<int> members;
            for (int b = 0; b < kCells; ++b) {
                if (reach[a][b] && reach[b][a]) members.insert(b);
            }
            expectedCycles.insert(members);
        }
        EXPECT_EQ(cycles, expectedCycles) << trial;
    }
}

struct EditCase {
    const char* what;
    std::vector<FormulaChange> (*edit)(DependencyGraph&);
    const char* changes;    // FROM>TO:TEXT, or FROM-removed
    const char* dependents; // of A2 afterwards
};

std::string describe(const std::vector<FormulaChange>& changes) {
    std::string text;
    for (const FormulaChange& change : changes) {
        text += (text.empty() ? "" : " ") + nameOf(change.oFrom) +
                (change.bRemoved ? "-removed" : ">" + nameOf(change.oTo) + ":" + change.oText);
    }
    return text;
}

TEST(DependencyGraph, StructuralEditsMoveCellsAndRewriteFormulas) {
    const EditCase kCases[] = {
        {"insert a row before row 2", [](DependencyGraph& g) { return g.oInsertRows(1, 1); },
         "B1>B1:=SUM(A1:A4) B2>B3:=$A$3*2 B3>B4:=B3+1", "B1"},
        {"delete row 2", [](DependencyGraph& g) { return g.oDeleteRows(1, 1); },
         "B1>B1:=SUM(A1:A2) B2-removed B3>B2:=#REF+1", "B1"},
        {"insert a column before B", [](DependencyGraph& g) { return g.oInsertColumns(1, 1); },
         "B1>C1:=SUM(A1:A3) B2>C2:=$A$2*2 B3>C3:=C2+1", "C1 C2"},
        {"delete column A", [](DependencyGraph& g) { return g.oDeleteColumns(0, 1); },
         "B1>A1:=SUM(#REF) B2>A2:=#REF*2 B3>A3:=A2+1", "A3"},
        {"move B2:B3 to D5", [](DependencyGraph& g) { return g.oMoveBlock(Selection(1, 1, 2, 1), 3, 2); },
         "B2>D5:=$A$2*2 B3>D6:=D5+1", "B1 D5"},
    };
    for (const EditCase& c : kCases) {
        SCOPED_TRACE(c.what);
        DependencyGraph graph = sheet({{"B1", "=SUM(A1:A3)"}, {"B2", "=$A$2*2"}, {"B3", "=B2+1"}});
        EXPECT_EQ(describe(c.edit(graph)), c.changes);
        EXPECT_EQ(names(graph.oGetDependents(cell("A2"))), c.dependents);
    }
}

TEST(DependencyGraph, NonsenseEditsChangeNothing) {
    DependencyGraph graph = sheet({{"A1048576", "=A1"}, {"B1", "=A2"}});
    EXPECT_THROW(graph.oInsertRows(0, 1), std::invalid_argument);  // would push A1048576 off the sheet
    EXPECT_THROW(graph.oDeleteRows(0, 0), std::invalid_argument);
    EXPECT_THROW(graph.oInsertColumns(2, -1), std::invalid_argument);
    EXPECT_THROW(graph.vSetFormula(SheetCell{0, 1048576}, "=1"), std::invalid_argument);
    EXPECT_EQ(graph.u64GetFormulaCount(), 2u);
    EXPECT_EQ(graph.oGetFormula(cell("B1")), "=A2");
}

// A long chain and a long cycle, ordered on a thread with a 256 KB stack.
void* orderLongChains(void* result) {
    constexpr int kLength = 1000000;
    DependencyGraph graph;
    for (int row = 1; row < kLength; ++row) graph.vSetFormula(SheetCell{0, row}, "=A" + std::to_string(row) + "+1");
    RecalculationOrder chain = graph.oGetRecalculationOrder({SheetCell{0, 0}});
    bool ok = chain.oOrder.size() == kLength - 1 && chain.oCycles.empty() && chain.oOrder.front().s32Row == 1 &&
              chain.oOrder.back().s32Row == kLength - 1;
    graph.vSetFormula(SheetCell{0, 0}, "=A" + std::to_string(kLength));  // closes the chain into a cycle
    RecalculationOrder cycle = graph.oGetRecalculationOrder({SheetCell{0, 0}});
    ok = ok && cycle.oOrder.empty() && cycle.oCycles.size() == 1 && cycle.oCycles[0].size() == kLength;
    *static_cast<bool*>(result) = ok;
    return nullptr;
}

TEST(DependencyGraph, MillionLongChainsNeedNoStack) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    bool ok = false;
    ASSERT_EQ(pthread_create(&thread, &attributes, orderLongChains, &ok), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_TRUE(ok);
}

}  // namespace
