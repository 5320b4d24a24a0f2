// Arbitrary bytes through the parser: every tree that comes back is asked all
// four questions at (up to 256 of) its nodes, printed and deleted, on one
// reused driver.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "cellformula.h"
#include "fuzzhost.h"

namespace {

// Longer texts only repeat what short ones reach, and slow the search down.
constexpr std::size_t kLargestInput = 4096;
// Nesting is limited so that one input stays fast to check, outline included.
constexpr std::size_t kMostParentheses = 2000;
// Each node is evaluated with its whole subtree, so large trees are checked
// at the root only to keep one input fast.
constexpr std::size_t kMostNodesCheckedOneByOne = 256;

[[noreturn]] void fail(const std::string& what, const std::string& formula) {
    std::fprintf(stderr, "parse_fuzzer: %s\nformula: %s\n", what.c_str(), formula.c_str());
    std::abort();
}

std::vector<ASTNode*> operandsOf(ASTNode* node) {
    std::vector<ASTNode*> operands;
    if (auto* single = dynamic_cast<CNSingleChildNode*>(node)) {
        operands.push_back(single->poChild);
    } else if (auto* many = dynamic_cast<CNManyChildrenNode*>(node)) {
        operands = many->oChildren;
        operands.push_back(many->poLeft);
        operands.push_back(many->poRight);
    } else if (auto* choice = dynamic_cast<CNIf*>(node)) {
        operands = {choice->poCondition, choice->poThen, choice->poElse};
    }
    operands.erase(std::remove(operands.begin(), operands.end(), nullptr), operands.end());
    return operands;
}

bool sameNumber(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b)); }

// Logical and comparison nodes answer exactly 1.0 or 0.0.
bool yieldsTruth(ASTNode& node) {
    return dynamic_cast<CNAnd*>(&node) || dynamic_cast<CNOr*>(&node) || dynamic_cast<CNNot*>(&node) ||
           dynamic_cast<CNIsError*>(&node) || dynamic_cast<CNGreater*>(&node) || dynamic_cast<CNLess*>(&node) ||
           dynamic_cast<CNGreatEqual*>(&node) || dynamic_cast<CNLessEqual*>(&node) || dynamic_cast<CNEqual*>(&node);
}

// What one node answers; a value operation may throw only the two standard
// exceptions, and only for a node whose error code already rejects it.
struct Answers {
    std::uint32_t type = ExprNoType;
    std::uint32_t error = ErrNone;
    double number = 0.0;
    std::string text;
    bool numberThrew = false;
    bool textThrew = false;
};

// Runs a value operation; false when it threw one of the two exceptions a
// value operation may throw for arguments errType rejects.
template <typename Operation, typename Value>
bool valueOf(Operation operation, Value& value) {
    try {
        value = operation();
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    } catch (const std::out_of_range&) {
        return false;
    }
}

Answers ask(ASTNode& node, const std::string& formula) {
    Answers answers;
    try {
        answers.type = node.exprType();
        answers.error = node.errType();
    } catch (const std::exception& thrown) {
        fail(std::string("exprType or errType threw: ") + thrown.what(), formula);
    }
    if (answers.type > ExprNoType) fail("exprType out of range: " + std::to_string(answers.type), formula);
    answers.numberThrew = !valueOf([&node] { return node.f64Evaluate(); }, answers.number);
    answers.textThrew = !valueOf([&node] { return node.stringEvaluate(); }, answers.text);
    if ((answers.numberThrew || answers.textThrew) && answers.error == ErrNone) {
        fail("a value operation threw although errType() is ErrNone", formula);
    }
    if (yieldsTruth(node) && !answers.numberThrew && answers.number != 0.0 && answers.number != 1.0) {
        fail("a logical node yielded " + std::to_string(answers.number), formula);
    }
    return answers;
}

void checkTree(ASTNode& root, const std::string& formula) {
    const Answers first = ask(root, formula);
    // Nothing is cached between calls, so asking again must give the same.
    const Answers second = ask(root, formula);
    if (first.type != second.type || first.error != second.error || !sameNumber(first.number, second.number) ||
        first.text != second.text || first.numberThrew != second.numberThrew || first.textThrew != second.textThrew) {
        fail("a second evaluation answered differently", formula);
    }

    std::vector<ASTNode*> pending{&root};
    for (std::size_t seen = 0; !pending.empty() && seen < kMostNodesCheckedOneByOne; ++seen) {
        ASTNode* node = pending.back();
        pending.pop_back();
        if (node != &root) ask(*node, formula);
        for (ASTNode* operand : operandsOf(node)) pending.push_back(operand);
    }
}

// The outcome of one parse, compared across two parses of the same text.
struct Outcome {
    bool parsed;
    std::string error;
    std::string outline;
};

// Standard error of the library, kept here so that each message can be
// compared with the error text (and the fuzzer's own output stays readable).
std::ostringstream& capturedErrors() {
    static std::ostringstream captured;
    return captured;
}

Outcome parseAndCheck(ExpressionParser::ParserDriver& driver, const std::string& formula) {
    capturedErrors().str(std::string());
    std::unique_ptr<ASTNode> root;
    try {
        root.reset(driver.poParseExpression(formula));
    } catch (const HostRefusal&) {
        return Outcome{false, "host refused", std::string()};
    }
    Outcome outcome{root != nullptr, driver.oGetErrorMsg(), std::string()};
    const std::string written = outcome.error.empty() ? std::string() : outcome.error + "\n";
    if (capturedErrors().str() != written) fail("standard error got other than the error text", formula);
    if (!root) {
        const bool formulaText = !formula.empty() && formula[0] == '=';
        if (formulaText && outcome.error.empty()) fail("a formula failed without an error text", formula);
        if (!formulaText && !SpreadSheetHelper::bIsNumber(formula) && !outcome.error.empty()) {
            fail("a text that is no formula left an error text", formula);
        }
        return outcome;
    }
    checkTree(*root, formula);
    std::stringstream outline;
    root->vPrintNode(outline, 0);
    outcome.outline = outline.str();
    return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kLargestInput) return -1;
    const std::string formula(reinterpret_cast<const char*>(data), size);
    if (static_cast<std::size_t>(std::count(formula.begin(), formula.end(), '(')) > kMostParentheses) return -1;

    static FuzzHost host;
    static ExpressionParser::ParserDriver driver;
    static const bool configured = [] {
        driver.vSetCalcCollection(&host);
        driver.vSetMaxRangeCells(10000);
        std::cerr.rdbuf(capturedErrors().rdbuf());
        return true;
    }();
    (void)configured;

    // The driver has just parsed some other input; the same text parsed twice
    // in a row must not notice.
    const Outcome first = parseAndCheck(driver, formula);
    const Outcome second = parseAndCheck(driver, formula);
    if (first.parsed != second.parsed || first.error != second.error || first.outline != second.outline) {
        fail("the same text parsed differently after another parse", formula);
    }
    return 0;
}
