// Scaling of errType() and exprType() on the tree shapes whose rules ask
// their operands again at every level. Depths stay at 10,000 or less:
// evaluation recurses once per level.
#include <cstdint>
#include <memory>
#include <string>

#include "benchutil.h"
#include "formulas.h"

namespace {

enum class Operation { Type, Error };

void queryShape(benchmark::State& state, Shape shape, Operation operation) {
    const int depth = static_cast<int>(state.range(0));
    BenchDriver driver(formulaSheet());
    const std::unique_ptr<ASTNode> tree = driver.parse(nestedShape(shape, depth));
    if (!tree) {
        state.SkipWithError("the shape did not parse");
        return;
    }
    std::uint32_t answer = 0;
    for (auto _ : state) {
        answer = operation == Operation::Type ? tree->exprType() : tree->errType();
        benchmark::DoNotOptimize(answer);
    }
    // Checked afterwards, as one more errType() would cost as much as the run.
    if (operation == Operation::Error && answer != ErrNone) {
        state.SkipWithError("the shape has an error, so its check stopped early");
    }
    state.SetComplexityN(depth);
    state.SetItemsProcessed(state.iterations() * depth);
}

void registerShapes() {
    const Shape shapes[] = {Shape::LeftDeepSum, Shape::IfInCondition, Shape::LogInBase, Shape::LeftInLeft,
                            Shape::RightNestedDivision};
    const struct {
        Operation operation;
        const char* name;
    } operations[] = {{Operation::Error, "ErrType"}, {Operation::Type, "ExprType"}};
    for (const auto& operation : operations) {
        for (const Shape shape : shapes) {
            const std::string name = std::string("Shape/") + operation.name + "/" + shapeName(shape);
            benchmark::RegisterBenchmark(name.c_str(), queryShape, shape, operation.operation)
                ->Apply([](benchmark::internal::Benchmark* bench) { decadeSeries(bench, 10, 10000); })
                ->Complexity();
        }
    }
}

// Registered before main runs, like the BENCHMARK macros.
const bool kShapesRegistered = (registerShapes(), true);

}  // namespace
