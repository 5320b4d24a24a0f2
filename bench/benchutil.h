#ifndef CELLFORMULA_BENCH_BENCHUTIL_H
#define CELLFORMULA_BENCH_BENCHUTIL_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cellformula.h"
#include "formulas.h"
#include "sheet.h"

// The comparable formula a benchmark's argument names, labelled with its text.
inline const PeerFormula& comparableFormulaOf(benchmark::State& state, bool ours) {
    const PeerFormula& formula = comparableFormulas()[static_cast<std::size_t>(state.range(0))];
    state.SetLabel(ours ? formula.ours : formula.muparser);
    return formula;
}

// A driver bound to a sheet, reused for every formula as a host would.
class BenchDriver {
public:
    explicit BenchDriver(BenchSheet& sheet) { driver_.vSetCalcCollection(&sheet); }

    ExpressionParser::ParserDriver& get() { return driver_; }

    // The tree of a formula the benchmark relies on; null only on a broken corpus.
    std::unique_ptr<ASTNode> parse(const std::string& formula) {
        return std::unique_ptr<ASTNode>(driver_.poParseExpression(formula));
    }

    // Parses and frees, as re-reading a stored formula costs; false when the
    // formula did not parse.
    bool parseAndFree(const std::string& formula) {
        ASTNode* root = driver_.poParseExpression(formula);
        benchmark::DoNotOptimize(root);
        const bool parsed = root != nullptr;
        delete root;
        return parsed;
    }

private:
    ExpressionParser::ParserDriver driver_;
};

// What a host does with a tree: ask the kind and the error, then read the
// value the way the kind says.
inline double readAsHost(ASTNode& root, std::string& text) {
    const std::uint32_t type = root.exprType();
    const std::uint32_t error = root.errType();
    if (error != ErrNone) return static_cast<double>(error);
    if (type == ExprString) {
        text = root.stringEvaluate();
        return static_cast<double>(text.size());
    }
    return root.f64Evaluate();
}

inline std::int64_t totalBytes(const std::vector<std::string>& formulas) {
    std::int64_t bytes = 0;
    for (const std::string& formula : formulas) bytes += static_cast<std::int64_t>(formula.size());
    return bytes;
}

// Scaling series: sizes a decade apart with a midpoint, from `first` to `last`.
inline void decadeSeries(benchmark::internal::Benchmark* bench, std::int64_t first, std::int64_t last) {
    for (std::int64_t size = first; size <= last; size *= 10) {
        bench->Arg(size);
        if (size * 3 <= last) bench->Arg(size * 3);
    }
}

#endif
