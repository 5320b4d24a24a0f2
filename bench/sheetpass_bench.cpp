// The realistic sheet of 100,000 formulas (formulasheet.h): what building the trees and the
// compiled programs costs, what they hold, and one pass over every formula.
#include <malloc.h>

#include <memory>
#include <vector>

#include "benchutil.h"
#include "formulasheet.h"

namespace {

// Bytes the allocator has handed out and not taken back, its own overhead included.
std::size_t bytesInUse() {
    return mallinfo2().uordblks;
}

struct SheetTrees {
    std::vector<std::unique_ptr<ASTNode>> trees;
    std::size_t bytes = 0;
};

formulasheet::Host& grid() {
    static formulasheet::Host host;
    return host;
}

std::vector<std::string> sheetTexts() {
    std::vector<std::string> texts;
    for (const formulasheet::Formula& formula : formulasheet::formulas()) texts.push_back(formula.text);
    return texts;
}

SheetTrees parseSheet() {
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&grid());
    SheetTrees sheet;
    const std::vector<std::string> formulas = sheetTexts();
    sheet.trees.reserve(formulas.size());
    const std::size_t before = bytesInUse();
    for (const std::string& formula : formulas) sheet.trees.emplace_back(driver.poParseExpression(formula));
    sheet.bytes = bytesInUse() - before;
    return sheet;
}

std::vector<cellformula::CompiledFormula> compileSheet(const SheetTrees& sheet, std::size_t& bytes) {
    std::vector<cellformula::CompiledFormula> programs;
    programs.reserve(sheet.trees.size());
    const std::size_t before = bytesInUse();
    for (const auto& tree : sheet.trees) programs.emplace_back(*tree);
    bytes = bytesInUse() - before;
    return programs;
}

void buildTrees(benchmark::State& state) {
    const std::vector<std::string> formulas = sheetTexts();
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&grid());
    for (auto _ : state) {
        for (const std::string& formula : formulas) delete driver.poParseExpression(formula);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(formulas.size()));
    state.counters["bytes/formula"] = static_cast<double>(parseSheet().bytes) / static_cast<double>(formulas.size());
}

void buildPrograms(benchmark::State& state) {
    const SheetTrees sheet = parseSheet();
    std::size_t bytes = 0;
    for (auto _ : state) benchmark::DoNotOptimize(compileSheet(sheet, bytes));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sheet.trees.size()));
    state.counters["bytes/formula"] = static_cast<double>(bytes) / static_cast<double>(sheet.trees.size());
}

void passTrees(benchmark::State& state) {
    const SheetTrees sheet = parseSheet();
    for (auto _ : state) {
        for (const auto& tree : sheet.trees) benchmark::DoNotOptimize(tree->f64Evaluate());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sheet.trees.size()));
}

void passPrograms(benchmark::State& state) {
    const SheetTrees sheet = parseSheet();
    std::size_t bytes = 0;
    const std::vector<cellformula::CompiledFormula> programs = compileSheet(sheet, bytes);
    for (auto _ : state) {
        for (const auto& program : programs) benchmark::DoNotOptimize(program.f64Evaluate());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(programs.size()));
}

}  // namespace

BENCHMARK(buildTrees)->Name("Sheet/Build/Trees")->Unit(benchmark::kMillisecond);
BENCHMARK(buildPrograms)->Name("Sheet/Build/Compiled")->Unit(benchmark::kMillisecond);
BENCHMARK(passTrees)->Name("Sheet/Pass/Trees")->Unit(benchmark::kMillisecond);
BENCHMARK(passPrograms)->Name("Sheet/Pass/Compiled")->Unit(benchmark::kMillisecond);
