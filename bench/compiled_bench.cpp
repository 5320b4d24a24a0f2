// Compiled programs against the trees they come from, on the comparable
// formulas: the value alone and the whole result, plus the one-call result
// of a tree. muparser's Eval of the same formulas runs in the same binary.
#include <memory>
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

struct Compiled {
    std::vector<std::unique_ptr<ASTNode>> trees;
    std::vector<std::unique_ptr<cellformula::CompiledFormula>> programs;
};

Compiled compileComparable() {
    BenchDriver driver(formulaSheet());
    Compiled compiled;
    for (const PeerFormula& formula : comparableFormulas()) {
        compiled.trees.push_back(driver.parse(formula.ours));
        compiled.programs.push_back(std::make_unique<cellformula::CompiledFormula>(*compiled.trees.back()));
    }
    return compiled;
}

void compiledValues(benchmark::State& state) {
    const Compiled compiled = compileComparable();
    for (auto _ : state) {
        for (const auto& program : compiled.programs) benchmark::DoNotOptimize(program->f64Evaluate());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(compiled.programs.size()));
}

// One formula at a time, beside muparser's MuParser/Evaluate/Comparable/N.
void compiledValue(benchmark::State& state) {
    BenchDriver driver(formulaSheet());
    const std::unique_ptr<ASTNode> tree = driver.parse(comparableFormulaOf(state, true).ours);
    const cellformula::CompiledFormula program(*tree);
    for (auto _ : state) benchmark::DoNotOptimize(program.f64Evaluate());
    state.SetItemsProcessed(state.iterations());
}

void compiledResults(benchmark::State& state) {
    const Compiled compiled = compileComparable();
    for (auto _ : state) {
        for (const auto& program : compiled.programs) benchmark::DoNotOptimize(program->oEvaluateAll());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(compiled.programs.size()));
}

void treeResults(benchmark::State& state) {
    const Compiled compiled = compileComparable();
    for (auto _ : state) {
        for (const auto& tree : compiled.trees) benchmark::DoNotOptimize(cellformula::oEvaluateAll(*tree));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(compiled.trees.size()));
}

}  // namespace

BENCHMARK(compiledValues)->Name("Compiled/Value/ComparableAll");
BENCHMARK(compiledValue)
    ->Name("Compiled/Value/Comparable")
    ->DenseRange(0, static_cast<int>(comparableFormulas().size()) - 1);
BENCHMARK(compiledResults)->Name("Compiled/Result/ComparableAll");
BENCHMARK(treeResults)->Name("OneCallTree/ComparableAll");
