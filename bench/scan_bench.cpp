// Parsing cost against the length of one token: a text literal, a run of
// blanks, a name and a text literal of byte 0s, each up to 10 MB, beside the
// long sum of many short tokens. bench/scan_exponents.py fits the growth exponent.
#include <string>

#include "benchutil.h"
#include "formulas.h"

namespace {

std::string textLiteral(std::size_t bytes, char filler) {
    return "=\"" + std::string(bytes, filler) + "\"";
}

// No variable source: the name series measures the scan, not a host's lookup.
void parseOne(benchmark::State& state, const std::string& formula) {
    ExpressionParser::ParserDriver driver;
    for (auto _ : state) {
        ASTNode* root = driver.poParseExpression(formula);
        benchmark::DoNotOptimize(root);
        if (root == nullptr) {
            state.SkipWithError("not parsed");
            return;
        }
        delete root;
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(formula.size()));
    state.SetComplexityN(state.range(0));
}

void scanLiteral(benchmark::State& state) {
    parseOne(state, textLiteral(static_cast<std::size_t>(state.range(0)), 'x'));
}

void scanBlanks(benchmark::State& state) {
    parseOne(state, "=" + std::string(static_cast<std::size_t>(state.range(0)), ' ') + "1");
}

void scanName(benchmark::State& state) {
    parseOne(state, "=" + std::string(static_cast<std::size_t>(state.range(0)), 'a'));
}

void scanByteZeroLiteral(benchmark::State& state) {
    parseOne(state, textLiteral(static_cast<std::size_t>(state.range(0)), '\0'));
}

void scanSum(benchmark::State& state) {
    parseOne(state, longSum(static_cast<std::size_t>(state.range(0))));
}

void tenKilobytesToTenMegabytes(benchmark::internal::Benchmark* bench) {
    decadeSeries(bench, 10000, 10000000);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

}  // namespace

BENCHMARK(scanLiteral)->Name("Scan/Literal")->Apply(tenKilobytesToTenMegabytes);
BENCHMARK(scanBlanks)->Name("Scan/Blanks")->Apply(tenKilobytesToTenMegabytes);
BENCHMARK(scanName)->Name("Scan/Name")->Apply(tenKilobytesToTenMegabytes);
BENCHMARK(scanByteZeroLiteral)->Name("Scan/ByteZeroLiteral")->Apply(tenKilobytesToTenMegabytes);
BENCHMARK(scanSum)->Name("Scan/Sum")->Apply(tenKilobytesToTenMegabytes);
