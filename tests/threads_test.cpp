// Threads that each own a driver, and threads that share one finished tree,
// get the single-threaded answers. Meant for a ThreadSanitizer build as well.
#include <gtest/gtest.h>

#include <atomic>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "testhost.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 25;

const char* const kFormulas[] = {
    "=SUM(A1:B2)*2",
    "=IF(A1>0;\"yes\";\"no\")",
    "=B1+\" and \"+A2",
    "=MAX(A1:C3)-MIN(A1;C3)",
    "=(LEFT(B1;2))+(RIGHT(B1;1))+(TEXT(B2;\"0.00\"))",
    "=DEC2HEX(255)+BIN2DEC(\"101\")",
    "=ISERROR(1/0)+SQRT(A2)+LOG(100;10)",
    "=1/0",
    "=C1*2",
    "=SUM(1;",
};

void fillHost(TestHost& host) {
    host.setNumber("A1", 1.0);
    host.setText("B1", "hello");
    host.setNumber("A2", 4.0);
    host.setNumber("B2", 0.5);
    host.setNumber("C3", -2.0);
    host.setEmpty("C1");
}

bool sameAnswers(const Evaluation& a, const Evaluation& b) {
    return a.parsed == b.parsed && a.value == b.value && a.text == b.text && a.type == b.type &&
           a.error == b.error && a.outline == b.outline;
}

// Runs `work` on kThreads threads and returns how many rounds disagreed.
template <typename Work>
int mismatchesOnThreads(Work work) {
    std::atomic<int> mismatches{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                if (!work()) ++mismatches;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    return mismatches;
}

Evaluation evaluateTree(ASTNode& root) {
    Evaluation result;
    result.parsed = true;
    result.type = root.exprType();
    result.error = root.errType();
    result.value = root.f64Evaluate();
    result.text = root.stringEvaluate();
    std::stringstream outline;
    root.vPrintNode(outline, 0);
    result.outline = outline.str();
    return result;
}

TEST(Threads, EachThreadParsesWithItsOwnDriver) {
    TestHost reference;
    fillHost(reference);
    std::vector<Evaluation> expected;
    for (const char* formula : kFormulas) expected.push_back(evaluateFormula(formula, &reference));
    const std::string moved = ExpressionParser::ParserDriver::oOffsetCellsNames(kFormulas[0], 1, 1);

    const int mismatches = mismatchesOnThreads([&] {
        // A host per round keeps its lookup log from growing over the rounds.
        TestHost host;
        fillHost(host);
        ExpressionParser::ParserDriver driver;
        driver.vSetCalcCollection(&host);
        bool same = ExpressionParser::ParserDriver::oOffsetCellsNames(kFormulas[0], 1, 1) == moved;
        for (std::size_t i = 0; i < std::size(kFormulas); ++i) {
            std::unique_ptr<ASTNode> root(driver.poParseExpression(kFormulas[i]));
            const Evaluation got = root ? evaluateTree(*root) : Evaluation{};
            same = same && sameAnswers(got, expected[i]);
        }
        return same;
    });
    EXPECT_EQ(mismatches, 0);
}

TEST(Threads, ThreadsShareOneTree) {
    TestHost host;
    fillHost(host);
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    std::unique_ptr<ASTNode> number(
        driver.poParseExpression("=IF(A1>0;SUM(A1:A2)+SQRT(A2)*LOG(100;10)-MAX(A1;B2);0)"));
    std::unique_ptr<ASTNode> text(driver.poParseExpression("=(LEFT(B1;3))+(TEXT(A2;\"0.0\"))+DEC2BIN(5)+B1"));
    ASSERT_TRUE(number && text);
    const Evaluation expectedNumber = evaluateTree(*number);
    const Evaluation expectedText = evaluateTree(*text);
    EXPECT_EQ(expectedNumber.value, 8.0);
    EXPECT_EQ(expectedText.text, "hel4.0101hello");

    // One compiled program of each, shared the same way: the stack program
    // for the number, the general one for the text.
    const cellformula::CompiledFormula numberProgram(*number);
    const cellformula::CompiledFormula textProgram(*text);
    const int mismatches = mismatchesOnThreads([&] {
        const cellformula::FormulaResult compiledNumber = numberProgram.oEvaluateAll();
        const cellformula::FormulaResult compiledText = textProgram.oEvaluateAll();
        return sameAnswers(evaluateTree(*number), expectedNumber) && sameAnswers(evaluateTree(*text), expectedText) &&
               compiledNumber.f64Value == expectedNumber.value && compiledNumber.u32Error == expectedNumber.error &&
               compiledText.oText == expectedText.text && compiledText.u32Error == expectedText.error;
    });
    EXPECT_EQ(mismatches, 0);
}

// Deep trees evaluated on several threads at once: each call keeps its own
// stack of answers on the heap, whatever the depth.
TEST(Threads, DeepTreesOnSeveralThreads) {
    ExpressionParser::ParserDriver driver;
    const int depth = 20000;
    std::string sqrt = "=";
    for (int i = 0; i < depth; ++i) sqrt += "SQRT(";
    sqrt += "1" + std::string(depth, ')');
    std::string concatenation = "=\"a\"";
    for (int i = 0; i < depth; ++i) concatenation += "+\"a\"";
    std::unique_ptr<ASTNode> number(driver.poParseExpression(sqrt));
    std::unique_ptr<ASTNode> text(driver.poParseExpression(concatenation));
    ASSERT_TRUE(number && text);
    const cellformula::CompiledFormula program(*number);
    const int mismatches = mismatchesOnThreads([&] {
        return number->f64Evaluate() == 1.0 && number->errType() == ErrNone && program.f64Evaluate() == 1.0 &&
               text->stringEvaluate().size() == static_cast<std::size_t>(depth + 1) &&
               cellformula::oEvaluateAll(*text).oText.size() == static_cast<std::size_t>(depth + 1);
    });
    EXPECT_EQ(mismatches, 0);
}

}  // namespace
