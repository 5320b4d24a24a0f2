// Parsing throughput with one reused driver: short realistic formulas, then
// long and deeply nested ones.
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

void parseAll(benchmark::State& state, const std::vector<std::string>& formulas) {
    BenchDriver driver(formulaSheet());
    // One untimed pass, so that a single timed run of a long formula does not
    // pay for growing the heap.
    for (const std::string& formula : formulas) driver.parseAndFree(formula);
    for (auto _ : state) {
        for (const std::string& formula : formulas) {
            if (!driver.parseAndFree(formula)) {
                state.SkipWithError(("not parsed: " + formula).c_str());
                return;
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(formulas.size()));
    state.SetBytesProcessed(state.iterations() * totalBytes(formulas));
}

void parseSheet(benchmark::State& state) {
    parseAll(state, sheetFormulas());
}

void parseComparableAll(benchmark::State& state) {
    std::vector<std::string> formulas;
    for (const PeerFormula& formula : comparableFormulas()) formulas.emplace_back(formula.ours);
    parseAll(state, formulas);
}

void parseComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, true).ours;
    parseAll(state, {formula});
}

// Left recursion keeps the parser stack flat however long the sum.
void parseLongSum(benchmark::State& state) {
    const std::string formula = longSum(static_cast<std::size_t>(state.range(0)));
    parseAll(state, {formula});
    state.SetComplexityN(state.range(0));
}

void parseNesting(benchmark::State& state) {
    const std::string formula = nestedParentheses(static_cast<int>(state.range(0)));
    parseAll(state, {formula});
    state.SetComplexityN(state.range(0));
}

void parseLongMixed(benchmark::State& state) {
    const std::string formula = longMixedFormula(static_cast<std::size_t>(state.range(0)));
    parseAll(state, {formula});
}

}  // namespace

BENCHMARK(parseSheet)->Name("Parse/Sheet");
BENCHMARK(parseComparableAll)->Name("Parse/ComparableAll");
BENCHMARK(parseComparable)->Name("Parse/Comparable")->DenseRange(0, static_cast<int>(comparableFormulas().size()) - 1);
BENCHMARK(parseLongSum)
    ->Name("Parse/LongSum")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 100, 10000000); })
    ->Complexity();
BENCHMARK(parseNesting)
    ->Name("Parse/Nesting")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 10, 10000); })
    ->Complexity();
BENCHMARK(parseLongMixed)->Name("Parse/LongMixed")->Arg(1 << 20);
