// The dependency graph on the 100,000-formula sheet: building it from the
// texts, the order after one cell changes, its memory; and a host's whole
// first evaluation and its recalculation after that change.
#include <malloc.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "cellreferences.h"
#include "formulasheet.h"

namespace {

using ExpressionParser::DependencyGraph;
using ExpressionParser::RecalculationOrder;
using ExpressionParser::SheetCell;

constexpr SheetCell kHotCell{0, 0};  // A1

void buildGraph(DependencyGraph& graph) {
    for (const formulasheet::Formula& formula : formulasheet::formulas()) graph.vSetFormula(formula.cell, formula.text);
}

std::size_t referenceCount() {
    std::size_t count = 0;
    for (const formulasheet::Formula& formula : formulasheet::formulas()) {
        count += ExpressionParser::CellReferences::oGetReferences(formula.text).size();
    }
    return count;
}

void graphBuild(benchmark::State& state) {
    const std::size_t formulas = formulasheet::formulas().size();
    for (auto _ : state) {
        DependencyGraph graph;
        buildGraph(graph);
        benchmark::DoNotOptimize(graph.u64GetFormulaCount());
    }
    // items_per_second is formulas per second.
    state.SetItemsProcessed(static_cast<std::int64_t>(formulas) * state.iterations());
}
BENCHMARK(graphBuild)->Unit(benchmark::kMillisecond);

void graphOrderAfterOneChange(benchmark::State& state) {
    DependencyGraph graph;
    buildGraph(graph);
    std::size_t dependents = 0;
    for (auto _ : state) {
        const RecalculationOrder order = graph.oGetRecalculationOrder({kHotCell});
        dependents = order.oOrder.size();
        benchmark::DoNotOptimize(order.oOrder.data());
    }
    state.counters["dependents"] = double(dependents);
    // items_per_second is ordered dependents per second.
    state.SetItemsProcessed(static_cast<std::int64_t>(dependents) * state.iterations());
}
BENCHMARK(graphOrderAfterOneChange)->Unit(benchmark::kMicrosecond);

// Bytes the graph holds per formula: as it estimates them, and as the
// allocator counts them while it is built.
void graphMemory(benchmark::State& state) {
    const double formulas = double(formulasheet::formulas().size());
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        auto graph = std::make_unique<DependencyGraph>();
        buildGraph(*graph);
        const std::size_t after = mallinfo2().uordblks;
        state.counters["estimated_bytes_per_formula"] = double(graph->u64GetMemoryBytes()) / formulas;
        state.counters["allocated_bytes_per_formula"] = double(after - before) / formulas;
    }
    state.counters["references_per_formula"] = double(referenceCount()) / formulas;
}
BENCHMARK(graphMemory)->Unit(benchmark::kMillisecond)->Iterations(1);

// A host's sheet: a tree per formula, indexed like the formulas.
struct Sheet {
    formulasheet::Host host;
    ExpressionParser::ParserDriver driver;
    DependencyGraph graph;
    std::vector<std::unique_ptr<ASTNode>> trees;

    Sheet() { driver.vSetCalcCollection(&host); }
    static std::size_t slot(SheetCell cell) {
        return std::size_t(cell.s32Column - formulasheet::kValueColumns) * formulasheet::kRows + std::size_t(cell.s32Row);
    }
    void evaluate(const std::vector<SheetCell>& order) {
        for (const SheetCell& cell : order) host.at(cell) = trees[slot(cell)]->f64Evaluate();
    }
    // Every formula parsed, in the graph, and evaluated once in its order.
    void load() {
        for (const formulasheet::Formula& formula : formulasheet::formulas()) {
            trees.emplace_back(driver.poParseExpression(formula.text));
            graph.vSetFormula(formula.cell, formula.text);
        }
        evaluate(graph.oGetCalculationOrder().oOrder);
    }
};

// A1 changes again and again: the order of its dependents, then `evaluate` of them.
template <typename Evaluate>
void recalculateAfterEachChange(benchmark::State& state, Sheet& sheet, Evaluate evaluate) {
    double value = 2.0;
    for (auto _ : state) {
        sheet.host.at(kHotCell) = value;
        value = value == 2.0 ? 3.0 : 2.0;
        const RecalculationOrder order = sheet.graph.oGetRecalculationOrder({kHotCell});
        evaluate(order.oOrder);
        state.counters["dependents"] = double(order.oOrder.size());
    }
}

// Parsing every formula, building the graph and evaluating every formula
// once in its order: what HyperFormula's buildFromArray does.
void sheetFirstEvaluation(benchmark::State& state) {
    for (auto _ : state) {
        Sheet sheet;
        sheet.trees.reserve(formulasheet::formulas().size());
        sheet.load();
        benchmark::DoNotOptimize(sheet.host.at(formulasheet::formulas().back().cell));
    }
}
BENCHMARK(sheetFirstEvaluation)->Unit(benchmark::kMillisecond);

// A1 changes: the order of its dependents, then their evaluation on the
// kept trees: what HyperFormula's setCellContents does.
void sheetRecalculationAfterOneChange(benchmark::State& state) {
    Sheet sheet;
    sheet.load();
    recalculateAfterEachChange(state, sheet, [&](const std::vector<SheetCell>& order) { sheet.evaluate(order); });
}
BENCHMARK(sheetRecalculationAfterOneChange)->Unit(benchmark::kMicrosecond);

// The same with each tree compiled once into a program.
void sheetRecalculationCompiled(benchmark::State& state) {
    Sheet sheet;
    sheet.load();
    std::vector<cellformula::CompiledFormula> programs;
    programs.reserve(sheet.trees.size());
    for (const auto& tree : sheet.trees) programs.emplace_back(*tree);
    recalculateAfterEachChange(state, sheet, [&](const std::vector<SheetCell>& order) {
        for (const SheetCell& cell : order) sheet.host.at(cell) = programs[Sheet::slot(cell)].f64Evaluate();
    });
}
BENCHMARK(sheetRecalculationCompiled)->Unit(benchmark::kMicrosecond);

}  // namespace
