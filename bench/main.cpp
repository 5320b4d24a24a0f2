#include <benchmark/benchmark.h>

#ifdef CELLFORMULA_BENCH_MUPARSER
#include <muParserDef.h>
#endif

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // The context header says whether the peer figures are in this run.
#ifdef CELLFORMULA_BENCH_MUPARSER
    benchmark::AddCustomContext("muparser", mu::ParserVersion);
#else
    benchmark::AddCustomContext("muparser", "not found at build time: no peer figures");
#endif
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
