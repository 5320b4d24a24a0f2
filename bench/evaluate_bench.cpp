// Evaluation of parsed trees: the value alone, the one-call result, and the
// whole host protocol of kind, error and value in three calls.
#include <memory>
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

std::vector<std::unique_ptr<ASTNode>> parseTrees(const std::vector<std::string>& formulas) {
    BenchDriver driver(formulaSheet());
    std::vector<std::unique_ptr<ASTNode>> trees;
    for (const std::string& formula : formulas) trees.push_back(driver.parse(formula));
    return trees;
}

std::vector<std::string> comparableTexts() {
    std::vector<std::string> formulas;
    for (const PeerFormula& formula : comparableFormulas()) formulas.emplace_back(formula.ours);
    return formulas;
}

bool allParsed(benchmark::State& state, const std::vector<std::unique_ptr<ASTNode>>& trees) {
    for (const auto& tree : trees) {
        if (!tree) {
            state.SkipWithError("a benchmark formula did not parse");
            return false;
        }
    }
    return true;
}

void evaluateNumbers(benchmark::State& state, const std::vector<std::string>& formulas) {
    const auto trees = parseTrees(formulas);
    if (!allParsed(state, trees)) return;
    for (auto _ : state) {
        for (const auto& tree : trees) benchmark::DoNotOptimize(tree->f64Evaluate());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(trees.size()));
}

void evaluateAsHost(benchmark::State& state, const std::vector<std::string>& formulas) {
    const auto trees = parseTrees(formulas);
    if (!allParsed(state, trees)) return;
    std::string text;
    for (auto _ : state) {
        for (const auto& tree : trees) benchmark::DoNotOptimize(readAsHost(*tree, text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(trees.size()));
}

void evaluateInOneCall(benchmark::State& state, const std::vector<std::string>& formulas) {
    const auto trees = parseTrees(formulas);
    if (!allParsed(state, trees)) return;
    for (auto _ : state) {
        for (const auto& tree : trees) {
            cellformula::FormulaResult result = cellformula::oEvaluateAll(*tree);
            benchmark::DoNotOptimize(result);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(trees.size()));
}

void evaluateComparableAll(benchmark::State& state) {
    evaluateNumbers(state, comparableTexts());
}

void protocolComparableAll(benchmark::State& state) {
    evaluateAsHost(state, comparableTexts());
}

void oneCallComparableAll(benchmark::State& state) {
    evaluateInOneCall(state, comparableTexts());
}

void evaluateComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, true).ours;
    evaluateNumbers(state, {formula});
}

void protocolComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, true).ours;
    evaluateAsHost(state, {formula});
}

void oneCallComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, true).ours;
    evaluateInOneCall(state, {formula});
}

void evaluateSheet(benchmark::State& state) {
    evaluateNumbers(state, sheetFormulas());
}

void protocolSheet(benchmark::State& state) {
    evaluateAsHost(state, sheetFormulas());
}

void oneCallSheet(benchmark::State& state) {
    evaluateInOneCall(state, sheetFormulas());
}

const int kLastComparable = static_cast<int>(comparableFormulas().size()) - 1;

}  // namespace

BENCHMARK(evaluateComparableAll)->Name("Evaluate/ComparableAll");
BENCHMARK(oneCallComparableAll)->Name("OneCall/ComparableAll");
BENCHMARK(protocolComparableAll)->Name("Protocol/ComparableAll");
BENCHMARK(evaluateComparable)->Name("Evaluate/Comparable")->DenseRange(0, kLastComparable);
BENCHMARK(oneCallComparable)->Name("OneCall/Comparable")->DenseRange(0, kLastComparable);
BENCHMARK(protocolComparable)->Name("Protocol/Comparable")->DenseRange(0, kLastComparable);
BENCHMARK(evaluateSheet)->Name("Evaluate/Sheet");
BENCHMARK(oneCallSheet)->Name("OneCall/Sheet");
BENCHMARK(protocolSheet)->Name("Protocol/Sheet");
