// Editor support over long formula texts: tokens in bytes per second, and
// the reference list on the same texts as the rewriting benchmarks, so the
// two compare within one run.
#include <sstream>
#include <string>

#include "benchutil.h"
#include "cellreferences.h"
#include "formulacursor.h"
#include "formulatokens.h"
#include "parserdriver.h"
#include "scanner.h"

namespace {

using ExpressionParser::CellReferences;
using ExpressionParser::FormulaTokens;

constexpr std::size_t kLongText = 1 << 20;

std::string textOf(bool references) {
    return references ? longReferenceList(kLongText) : longMixedFormula(kLongText);
}

// `reused`: into one vector kept across calls, as an editor would; otherwise
// a new vector per call, whose fresh pages dominate on a long text.
void tokens(benchmark::State& state, bool references, bool reused) {
    const std::string formula = textOf(references);
    std::vector<ExpressionParser::FormulaToken> kept;
    for (auto _ : state) {
        if (reused) {
            FormulaTokens::vGetTokens(formula, kept);
        } else {
            kept = FormulaTokens::oGetTokens(formula);
        }
        benchmark::DoNotOptimize(kept.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.counters["tokens"] = static_cast<double>(kept.size());
}

void references(benchmark::State& state, bool references, bool reused) {
    const std::string formula = textOf(references);
    std::vector<ExpressionParser::CellReference> kept;
    for (auto _ : state) {
        if (reused) {
            CellReferences::vGetReferences(formula, kept);
        } else {
            kept = CellReferences::oGetReferences(formula);
        }
        benchmark::DoNotOptimize(kept.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.counters["references"] = static_cast<double>(kept.size());
}

// The generated scanner alone, as tokens and references run it (no values),
// with nothing done per token: the most either can reach while the scanner
// states the token rules.
void scannerAlone(benchmark::State& state, bool references) {
    const std::string formula = textOf(references);
    std::int64_t count = 0;
    for (auto _ : state) {
        std::istringstream unused;
        ExpressionParser::Scanner scanner(&unused, nullptr);
        scanner.vSetText("", formula);
        scanner.vKeepValues(false);
        scanner.yyrestart(unused);
        ExpressionParser::Parser::semantic_type value{};
        ExpressionParser::location where;
        count = 0;
        // The texts are one line, so only their end has a token begin behind the last byte.
        while (scanner.lex(&value, &where) != 0 || static_cast<std::size_t>(where.begin.column) <= formula.size()) {
            ++count;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.counters["tokens"] = static_cast<double>(count);
}

// A host colouring one short formula at each keystroke.
void tokensShort(benchmark::State& state) {
    const std::string formula = "=IF(SUM($A$1:B20)>0;LEFT(\"total\";3);ROUND*2)";
    for (auto _ : state) benchmark::DoNotOptimize(FormulaTokens::oGetTokens(formula));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
}

// Token rate by shape: what the scanner's own actions cost per kind of token.
void tokensOfShape(benchmark::State& state, std::string piece) {
    std::string formula = "=";
    while (formula.size() < kLongText) formula += piece;
    std::vector<ExpressionParser::FormulaToken> kept;
    for (auto _ : state) FormulaTokens::vGetTokens(formula, kept);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.counters["tokens"] = static_cast<double>(kept.size());
}
// Help with the cursor at the end, so the whole text is read.
void cursorAtEnd(benchmark::State& state) {
    const std::string formula = longMixedFormula(kLongText);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ExpressionParser::FormulaCursor::oGetHelp(formula, formula.size()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
}

// Everything a formula bar does at one keystroke on a 1 KB formula: tokens,
// references, a parse with its syntax-error data, and the help at the cursor.
// `ending` is what was typed last: nothing (a complete formula), an unfinished
// call, or an open quote (judged by a second parse with the quote closed).
void keystroke(benchmark::State& state, std::string ending) {
    const std::string formula = longMixedFormula(1024 - ending.size()) + ending;
    ExpressionParser::ParserDriver driver;
    driver.vSetErrorStream(nullptr);
    std::vector<ExpressionParser::FormulaToken> tokens;
    std::vector<ExpressionParser::CellReference> references;
    for (auto _ : state) {
        FormulaTokens::vGetTokens(formula, tokens);
        CellReferences::vGetReferences(formula, references);
        delete driver.poParseExpression(formula);
        benchmark::DoNotOptimize(driver.poGetSyntaxError());
        benchmark::DoNotOptimize(ExpressionParser::FormulaCursor::oGetHelp(formula, formula.size()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.counters["bytes"] = static_cast<double>(formula.size());
}
}  // namespace

BENCHMARK(cursorAtEnd)->Name("Cursor/Mixed/1MB");
BENCHMARK_CAPTURE(keystroke, complete, std::string())->Name("Keystroke/1KB/Complete");
BENCHMARK_CAPTURE(keystroke, unfinished, std::string("+SUM(A1;"))->Name("Keystroke/1KB/Unfinished");
BENCHMARK_CAPTURE(keystroke, openQuote, std::string("+LEFT(\"ab"))->Name("Keystroke/1KB/OpenQuote");
BENCHMARK_CAPTURE(tokens, mixed, false, true)->Name("Tokens/Mixed/1MB");
BENCHMARK_CAPTURE(tokens, references, true, true)->Name("Tokens/References/1MB");
BENCHMARK_CAPTURE(tokens, mixedNew, false, false)->Name("Tokens/Mixed/1MB/NewVector");
BENCHMARK_CAPTURE(references, mixed, false, true)->Name("References/Mixed/1MB");
BENCHMARK_CAPTURE(references, references, true, true)->Name("References/References/1MB");
BENCHMARK_CAPTURE(references, referencesNew, true, false)->Name("References/References/1MB/NewVector");
BENCHMARK_CAPTURE(scannerAlone, mixed, false)->Name("Scanner/Mixed/1MB");
BENCHMARK_CAPTURE(scannerAlone, references, true)->Name("Scanner/References/1MB");
BENCHMARK(tokensShort)->Name("Tokens/ShortFormula");
BENCHMARK_CAPTURE(tokensOfShape, integers, std::string("1+"))->Name("Tokens/Shape/Integers");
BENCHMARK_CAPTURE(tokensOfShape, doubles, std::string("1.5+"))->Name("Tokens/Shape/Doubles");
BENCHMARK_CAPTURE(tokensOfShape, names, std::string("ab+"))->Name("Tokens/Shape/Names");
BENCHMARK_CAPTURE(tokensOfShape, keywords, std::string("SIN("))->Name("Tokens/Shape/Keywords");
BENCHMARK_CAPTURE(tokensOfShape, blanks, std::string("1 +   "))->Name("Tokens/Shape/Blanks");
