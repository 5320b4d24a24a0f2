// The peer: muparser parses and evaluates the same formulas on the same
// cells, so each of our figures has a ratio. muparser compiles an expression
// on its first Eval() after SetExpr(), so a parse is SetExpr() plus Eval().
#include <muParser.h>

#include <memory>
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

// Every number cell of the formula sheet, as muparser variables.
void defineCells(mu::Parser& parser) {
    BenchSheet& sheet = formulaSheet();
    for (int row = 0; row < sheet.rows(); ++row) {
        for (int column = 0; column < sheet.columns(); ++column) {
            if (!sheet.isText(column)) parser.DefineVar(BenchSheet::cellName(column, row), sheet.number(column, row));
        }
    }
}

bool compile(benchmark::State& state, mu::Parser& parser, const std::string& formula) {
    try {
        parser.SetExpr(formula);
        benchmark::DoNotOptimize(parser.Eval());
        return true;
    } catch (const mu::Parser::exception_type& error) {
        state.SkipWithError(("muparser refused: " + error.GetMsg()).c_str());
        return false;
    }
}

void parseAll(benchmark::State& state, const std::vector<std::string>& formulas) {
    mu::Parser parser;
    defineCells(parser);
    for (const std::string& formula : formulas) {
        if (!compile(state, parser, formula)) return;
    }
    for (auto _ : state) {
        for (const std::string& formula : formulas) {
            if (!compile(state, parser, formula)) return;
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(formulas.size()));
    state.SetBytesProcessed(state.iterations() * totalBytes(formulas));
}

std::vector<std::string> comparableTexts() {
    std::vector<std::string> formulas;
    for (const PeerFormula& formula : comparableFormulas()) formulas.emplace_back(formula.muparser);
    return formulas;
}

void parseComparableAll(benchmark::State& state) {
    parseAll(state, comparableTexts());
}

void parseComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, false).muparser;
    parseAll(state, {formula});
}

// A host that makes a parser per formula also pays for the built-in
// functions and the cell variables every time.
void parseWithFreshParser(benchmark::State& state) {
    const std::string formula = comparableFormulas()[0].muparser;
    for (auto _ : state) {
        mu::Parser parser;
        defineCells(parser);
        if (!compile(state, parser, formula)) return;
    }
    state.SetLabel(formula);
    state.SetItemsProcessed(state.iterations());
}

void parseLongSum(benchmark::State& state) {
    parseAll(state, {longSum(static_cast<std::size_t>(state.range(0)), false)});
    state.SetComplexityN(state.range(0));
}

void parseNesting(benchmark::State& state) {
    parseAll(state, {nestedParentheses(static_cast<int>(state.range(0)), false)});
    state.SetComplexityN(state.range(0));
}

void evaluateFormulas(benchmark::State& state, const std::vector<std::string>& formulas) {
    std::vector<std::unique_ptr<mu::Parser>> parsers;
    for (const std::string& formula : formulas) {
        parsers.push_back(std::make_unique<mu::Parser>());
        defineCells(*parsers.back());
        if (!compile(state, *parsers.back(), formula)) return;
    }
    for (auto _ : state) {
        for (const auto& parser : parsers) benchmark::DoNotOptimize(parser->Eval());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(formulas.size()));
}

void evaluateComparableAll(benchmark::State& state) {
    evaluateFormulas(state, comparableTexts());
}

void evaluateComparable(benchmark::State& state) {
    const std::string formula = comparableFormulaOf(state, false).muparser;
    evaluateFormulas(state, {formula});
}

const int kLastComparable = static_cast<int>(comparableFormulas().size()) - 1;

}  // namespace

BENCHMARK(parseComparableAll)->Name("MuParser/Parse/ComparableAll");
BENCHMARK(parseComparable)->Name("MuParser/Parse/Comparable")->DenseRange(0, kLastComparable);
BENCHMARK(parseWithFreshParser)->Name("MuParser/Parse/FreshParser");
// muparser refuses expressions longer than 20,000 characters.
BENCHMARK(parseLongSum)
    ->Name("MuParser/Parse/LongSum")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 100, 10000); })
    ->Complexity();
BENCHMARK(parseNesting)
    ->Name("MuParser/Parse/Nesting")
    ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 10, 3000); })
    ->Complexity();
BENCHMARK(evaluateComparableAll)->Name("MuParser/Evaluate/ComparableAll");
BENCHMARK(evaluateComparable)->Name("MuParser/Evaluate/Comparable")->DenseRange(0, kLastComparable);
