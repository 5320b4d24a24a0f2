// Arbitrary bytes through the structural edits and the dependency graph:
// nothing crashes for any text, an insertion undone by the deletion of the
// same rows gives the text back, and the graph orders every formula or lists
// it in a cycle.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "dependencygraph.h"
#include "structuraledit.h"

namespace {

using ExpressionParser::CellReferences;
using ExpressionParser::DependencyGraph;
using ExpressionParser::SheetCell;
using ExpressionParser::SheetSize;
using ExpressionParser::StructuralEdit;

constexpr std::size_t kLargestInput = 16384;
constexpr SheetSize kSize{100, 30};

[[noreturn]] void fail(const std::string& what, const std::string& formula, const std::string& got) {
    std::fprintf(stderr, "sheet_fuzzer: %s\nformula: %s\ngot:     %s\n", what.c_str(), formula.c_str(), got.c_str());
    std::abort();
}

// Whether every reference keeps clear of the sheet's last `count` rows, so that an insertion pushes none off.
bool clearOfTheEnd(const std::string& formula, std::int32_t count) {
    for (const auto& reference : CellReferences::oGetReferences(formula)) {
        if (std::max(reference.oFrom.s32Row, reference.oTo.s32Row) >= kSize.s32Rows - count) return false;
    }
    return true;
}

void editsReturn(const std::string& formula) {
    for (const std::int32_t at : {0, 1, 50, 97}) {
        for (const std::int32_t count : {1, 3}) {
            const std::string inserted = StructuralEdit::oInsertRows(formula, at, count, kSize);
            const std::string back = StructuralEdit::oDeleteRows(inserted, at, count, kSize);
            if (clearOfTheEnd(formula, count) && back != formula) fail("rows inserted and deleted", formula, back);
            StructuralEdit::oInsertColumns(formula, at % kSize.s32Columns, count, kSize);
            StructuralEdit::oDeleteColumns(formula, at % kSize.s32Columns, count, kSize);
            StructuralEdit::oCopyFormula(formula, at - 50, count - 2, kSize);
        }
    }
    StructuralEdit::oMoveBlock(formula, SpreadSheetHelper::Selection(2, 1, 9, 4), 5, -1, kSize);
    try {
        StructuralEdit::oInsertRows(formula, 0, 0, kSize);
        fail("a count of 0 was taken", formula, "");
    } catch (const std::invalid_argument&) {
    }
}

// Up to four formulas, one per line, in A1, B2, C3 and A4.
void graphHolds(const std::string& text) {
    DependencyGraph graph(kSize);
    const SheetCell cells[] = {{0, 0}, {1, 1}, {2, 2}, {0, 3}};
    std::size_t begin = 0;
    for (const SheetCell& cell : cells) {
        if (begin > text.size()) break;
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        graph.vSetFormula(cell, text.substr(begin, end - begin));
        begin = end + 1;
    }
    const std::size_t formulas = graph.u64GetFormulaCount();
    const auto order = graph.oGetCalculationOrder();
    std::size_t placed = order.oOrder.size();
    for (const auto& cycle : order.oCycles) placed += cycle.size();
    if (placed != formulas) fail("a formula neither ordered nor in a cycle", text, std::to_string(placed));
    graph.oGetRecalculationOrder({SheetCell{0, 0}, SheetCell{1, 1}});
    graph.oGetDependents(SpreadSheetHelper::Selection(0, 0, 99, 29));
    graph.oDeleteRows(1, 1);
    graph.oInsertColumns(0, 2);
    graph.oMoveBlock(SpreadSheetHelper::Selection(0, 0, 1, 1), 3, 3);
    graph.oGetCalculationOrder();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kLargestInput) return -1;
    const std::string text(reinterpret_cast<const char*>(data), size);
    editsReturn(text);
    graphHolds(text);
    return 0;
}
