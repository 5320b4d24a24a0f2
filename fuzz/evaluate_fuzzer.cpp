// Every way of evaluating a tree gives the same answers: the tree's own
// operations, the one-call result, and the compiled program's operations and
// one-call result. Values are compared bit for bit, texts byte for byte and
// exceptions by kind, at the root and at (up to 64 of) its subtrees.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cellformula.h"
#include "fuzzhost.h"

namespace {

constexpr std::size_t kLargestInput = 4096;
constexpr std::size_t kMostSubtreesCompared = 64;

[[noreturn]] void fail(const std::string& what, const std::string& formula) {
    std::fprintf(stderr, "evaluate_fuzzer: %s\nformula: %s\n", what.c_str(), formula.c_str());
    std::abort();
}

// A value, or the kind of standard exception computing it threw.
struct Outcome {
    std::string bytes;
    std::string thrown;

    bool operator==(const Outcome& other) const { return bytes == other.bytes && thrown == other.thrown; }
};

Outcome numberOutcome(const std::function<double()>& compute) {
    try {
        const double value = compute();
        return Outcome{std::string(reinterpret_cast<const char*>(&value), sizeof value), std::string()};
    } catch (const std::invalid_argument&) {
        return Outcome{std::string(), "invalid_argument"};
    } catch (const std::out_of_range&) {
        return Outcome{std::string(), "out_of_range"};
    }
}

Outcome textOutcome(const std::function<std::string()>& compute) {
    try {
        return Outcome{compute(), std::string()};
    } catch (const std::invalid_argument&) {
        return Outcome{std::string(), "invalid_argument"};
    } catch (const std::out_of_range&) {
        return Outcome{std::string(), "out_of_range"};
    }
}

// Everything a host can read of one evaluation path.
struct Reading {
    std::uint32_t type;
    std::uint32_t error;
    Outcome number;
    Outcome text;
};

// The one-call result gives the value the type says to read; the rest is
// compared against the matching separate reading.
Outcome resultOutcome(const std::function<cellformula::FormulaResult()>& compute, std::uint32_t type,
                      std::uint32_t error, const std::string& formula) {
    try {
        const cellformula::FormulaResult result = compute();
        if (result.u32Type != type || result.u32Error != error) fail("a one-call type or error differs", formula);
        if (type != ExprNumber) return Outcome{result.oText, std::string()};
        return Outcome{std::string(reinterpret_cast<const char*>(&result.f64Value), sizeof result.f64Value),
                       std::string()};
    } catch (const std::invalid_argument&) {
        return Outcome{std::string(), "invalid_argument"};
    } catch (const std::out_of_range&) {
        return Outcome{std::string(), "out_of_range"};
    }
}

void compareAt(ASTNode& node, const std::string& formula) {
    const Reading tree{node.exprType(), node.errType(), numberOutcome([&] { return node.f64Evaluate(); }),
                       textOutcome([&] { return node.stringEvaluate(); })};
    const cellformula::CompiledFormula program(node);
    const Reading compiled{program.exprType(), program.errType(), numberOutcome([&] { return program.f64Evaluate(); }),
                           textOutcome([&] { return program.stringEvaluate(); })};
    if (compiled.type != tree.type) fail("the compiled type differs", formula);
    if (compiled.error != tree.error) fail("the compiled error differs", formula);
    if (!(compiled.number == tree.number)) fail("the compiled value differs", formula);
    if (!(compiled.text == tree.text)) fail("the compiled text differs", formula);

    const Outcome& expected = tree.type == ExprNumber ? tree.number : tree.text;
    const Outcome oneCall = resultOutcome([&] { return cellformula::oEvaluateAll(node); }, tree.type, tree.error, formula);
    if (!(oneCall == expected)) fail("the one-call result differs", formula);
    const Outcome compiledOneCall =
        resultOutcome([&] { return program.oEvaluateAll(); }, tree.type, tree.error, formula);
    if (!(compiledOneCall == expected)) fail("the compiled one-call result differs", formula);
}

// A node's operands, through the public fields of the node classes.
std::vector<ASTNode*> operandsOf(ASTNode* node) {
    std::vector<ASTNode*> operands;
    if (auto* one = dynamic_cast<CNSingleChildNode*>(node)) {
        operands.push_back(one->poChild);
    } else if (auto* many = dynamic_cast<CNManyChildrenNode*>(node)) {
        operands = {many->poLeft, many->poRight};
        operands.insert(operands.end(), many->oChildren.begin(), many->oChildren.end());
    } else if (auto* condition = dynamic_cast<CNIf*>(node)) {
        operands = {condition->poCondition, condition->poThen, condition->poElse};
    }
    std::vector<ASTNode*> present;
    for (ASTNode* operand : operands) {
        if (operand != nullptr) present.push_back(operand);
    }
    return present;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kLargestInput) return -1;
    const std::string formula(reinterpret_cast<const char*>(data), size);

    static FuzzHost host;
    static ExpressionParser::ParserDriver driver;
    static const bool configured = [] {
        driver.vSetCalcCollection(&host);
        driver.vSetMaxRangeCells(10000);
        driver.vSetErrorStream(nullptr);
        return true;
    }();
    (void)configured;

    std::unique_ptr<ASTNode> root;
    try {
        root.reset(driver.poParseExpression(formula));
    } catch (const HostRefusal&) {
        return 0;
    }
    if (!root) return 0;
    std::vector<ASTNode*> pending{root.get()};
    for (std::size_t compared = 0; !pending.empty() && compared < kMostSubtreesCompared; ++compared) {
        ASTNode* node = pending.back();
        pending.pop_back();
        compareAt(*node, formula);
        for (ASTNode* operand : operandsOf(node)) pending.push_back(operand);
    }
    return 0;
}
