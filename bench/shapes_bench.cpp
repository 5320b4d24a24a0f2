// Scaling series of every public operation on every deep shape, from 1,000
// levels to 100,000 (a million terms for the sum): each operation must stay
// linear, so bench/exponents.py fits the exponent of each series.
#include <time.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "benchutil.h"
#include "formulas.h"

namespace {

enum class Operation { Type, Error, Value, Text, OneCall, Visit, Delete };

struct OperationName {
    Operation operation;
    const char* name;
};

const OperationName kOperations[] = {
    {Operation::Type, "ExprType"},     {Operation::Error, "ErrType"},      {Operation::Value, "F64Evaluate"},
    {Operation::Text, "StringEvaluate"}, {Operation::OneCall, "EvaluateAll"}, {Operation::Visit, "Visit"},
    {Operation::Delete, "Delete"},
};

// Long enough for a hundred runs of the largest trees, short enough that
// all the series finish in a few minutes.
constexpr double kSeriesSeconds = 0.1;

// A node's operands through the public fields of the node classes.
void operandsOf(const ASTNode& node, std::vector<const ASTNode*>& pending) {
    auto add = [&](const ASTNode* operand) {
        if (operand != nullptr) pending.push_back(operand);
    };
    if (const auto* one = dynamic_cast<const CNSingleChildNode*>(&node)) {
        add(one->poChild);
    } else if (const auto* many = dynamic_cast<const CNManyChildrenNode*>(&node)) {
        add(many->poLeft);
        add(many->poRight);
        for (const ASTNode* child : many->oChildren) add(child);
    } else if (const auto* condition = dynamic_cast<const CNIf*>(&node)) {
        add(condition->poCondition);
        add(condition->poThen);
        add(condition->poElse);
    }
}

// Every node once, through a work list and no recursion: what reading the
// tree's memory costs by itself, the floor under every walk of that tree.
std::size_t visitNodes(const ASTNode& root) {
    std::vector<const ASTNode*> pending{&root};
    std::size_t visited = 0;
    while (!pending.empty()) {
        const ASTNode* node = pending.back();
        pending.pop_back();
        ++visited;
        operandsOf(*node, pending);
    }
    return visited;
}

void runOperation(benchmark::State& state, ASTNode& tree, Operation operation) {
    for (auto _ : state) {
        switch (operation) {
            case Operation::Type: benchmark::DoNotOptimize(tree.exprType()); break;
            case Operation::Error: benchmark::DoNotOptimize(tree.errType()); break;
            case Operation::Value: benchmark::DoNotOptimize(tree.f64Evaluate()); break;
            case Operation::Text: {
                std::string text = tree.stringEvaluate();
                benchmark::DoNotOptimize(text);
                break;
            }
            case Operation::OneCall: {
                cellformula::FormulaResult result = cellformula::oEvaluateAll(tree);
                benchmark::DoNotOptimize(result);
                break;
            }
            case Operation::Visit: benchmark::DoNotOptimize(visitNodes(tree)); break;
            case Operation::Delete: break;
        }
    }
}

double threadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Each run frees a fresh tree; only the processor time of the delete counts,
// so the parse before it and other engineers' load stay out of the figure.
void runDelete(benchmark::State& state, BenchDriver& driver, const std::string& formula) {
    for (auto _ : state) {
        ASTNode* root = driver.parse(formula).release();
        const double start = threadSeconds();
        delete root;
        state.SetIterationTime(threadSeconds() - start);
    }
}

void growShape(benchmark::State& state, const GrowingShape* shape, Operation operation) {
    const int levels = static_cast<int>(state.range(0));
    const std::string formula = grownFormula(*shape, levels);
    BenchDriver driver(formulaSheet());
    if (operation == Operation::Delete) {
        runDelete(state, driver, formula);
    } else {
        const std::unique_ptr<ASTNode> tree = driver.parse(formula);
        if (!tree) {
            state.SkipWithError("the shape did not parse");
            return;
        }
        runOperation(state, *tree, operation);
        // The error code tells whether every level ran its complete check.
        state.counters["error"] = tree->errType();
    }
    state.SetComplexityN(levels);
    state.SetItemsProcessed(state.iterations() * levels);
}

void registerShapes() {
    for (const GrowingShape& shape : growingShapes()) {
        for (const OperationName& operation : kOperations) {
            // Timing the delete of a one-node tree would parse the whole
            // formula for every few nanoseconds measured; visiting it
            // measures nothing.
            const bool perNode = operation.operation == Operation::Delete || operation.operation == Operation::Visit;
            if (perNode && !shape.nodePerLevel) continue;
            const std::string name = std::string("Shape/") + shape.name + "/" + operation.name;
            auto* bench = benchmark::RegisterBenchmark(name.c_str(), growShape, &shape, operation.operation)
                              ->MinTime(kSeriesSeconds)
                              ->Complexity();
            decadeSeries(bench, 1000, shape.largest);
            if (operation.operation == Operation::Delete) bench->UseManualTime();
        }
    }
}

// Registered before main runs, like the BENCHMARK macros.
const bool kShapesRegistered = (registerShapes(), true);

}  // namespace
