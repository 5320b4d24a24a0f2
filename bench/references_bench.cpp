// Reference rewriting over long formula texts, and range expansion per cell.
#include <memory>
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

using ExpressionParser::ParserDriver;

constexpr std::size_t kLongText = 1 << 20;

enum class Text { Mixed, References };
enum class Edit { Offset, RowInsertion };

std::string rewrite(Edit edit, const std::string& formula) {
    if (edit == Edit::Offset) return ParserDriver::oOffsetCellsNames(formula, 1, 1);
    return ParserDriver::oChangeCellNamesAfterRowInsertion(formula, 50);
}

void rewriteText(benchmark::State& state, const std::string& formula, Edit edit) {
    for (auto _ : state) benchmark::DoNotOptimize(rewrite(edit, formula));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
}

void rewriteLong(benchmark::State& state, Text text, Edit edit) {
    const std::string formula = text == Text::Mixed ? longMixedFormula(kLongText) : longReferenceList(kLongText);
    rewriteText(state, formula, edit);
}

void rewriteLength(benchmark::State& state) {
    rewriteText(state, longMixedFormula(static_cast<std::size_t>(state.range(0))), Edit::Offset);
    state.SetComplexityN(state.range(0));
}

// The rectangle of the whole range sheet: 100 columns by 1000 rows.
void expandRange(benchmark::State& state) {
    BenchDriver driver(rangeSheet());
    std::int64_t cells = 0;
    for (auto _ : state) {
        std::vector<ASTNode*> nodes = driver.get().oGetMultipleCellsVarList("A1", "CV1000");
        cells += static_cast<std::int64_t>(nodes.size());
        for (ASTNode* node : nodes) delete node;
    }
    if (cells == 0) state.SkipWithError("the range did not expand");
    state.SetItemsProcessed(cells);
}

void parseRange(benchmark::State& state) {
    BenchDriver driver(rangeSheet());
    const std::string formula = rangeSum(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        if (!driver.parseAndFree(formula)) {
            state.SkipWithError(("not parsed: " + formula).c_str());
            return;
        }
    }
    state.SetLabel(formula);
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void evaluateRange(benchmark::State& state, bool asHost) {
    BenchDriver driver(rangeSheet());
    const std::unique_ptr<ASTNode> tree = driver.parse(rangeSum(static_cast<int>(state.range(0))));
    if (!tree) {
        state.SkipWithError("the range did not parse");
        return;
    }
    std::string text;
    for (auto _ : state) {
        if (asHost) {
            benchmark::DoNotOptimize(readAsHost(*tree, text));
        } else {
            benchmark::DoNotOptimize(tree->f64Evaluate());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void registerRewriting() {
    const struct {
        Text text;
        const char* name;
    } texts[] = {{Text::Mixed, "Mixed"}, {Text::References, "References"}};
    const struct {
        Edit edit;
        const char* name;
    } edits[] = {{Edit::Offset, "OffsetCellsNames"}, {Edit::RowInsertion, "AfterRowInsertion"}};
    for (const auto& edit : edits) {
        for (const auto& text : texts) {
            const std::string name = std::string("Rewrite/") + edit.name + "/" + text.name + "/1MB";
            benchmark::RegisterBenchmark(name.c_str(), rewriteLong, text.text, edit.edit);
        }
    }
}

const bool kRewritingRegistered = (registerRewriting(), true);

}  // namespace

BENCHMARK(rewriteLength)
    ->Name("Rewrite/OffsetCellsNames/Mixed/Length")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 1000, 1000000); })
    ->Complexity();
BENCHMARK(expandRange)->Name("Range/Expand/A1:CV1000");
BENCHMARK(parseRange)
    ->Name("Range/Parse")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 100, 100000); })
    ->Complexity();
BENCHMARK_CAPTURE(evaluateRange, value, false)->Name("Range/F64Evaluate")->Arg(100000);
BENCHMARK_CAPTURE(evaluateRange, host, true)->Name("Range/Protocol")->Arg(100000);
