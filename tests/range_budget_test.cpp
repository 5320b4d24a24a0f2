// All ranges of one formula share one cell budget; the host is never asked
// for a cell beyond it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "testhost.h"

using ExpressionParser::ParserDriver;

namespace {

std::string repeated(const std::string& range, int times) {
    std::string formula = "=SUM(" + range;
    for (int i = 1; i < times; ++i) formula += ";" + range;
    return formula + ")";
}

struct Budget {
    std::string formula;
    std::uint64_t limit;
    std::size_t lookups;  // cells the host is asked for
    const char* error;    // empty when the formula parses
};

const Budget kBudgets[] = {
    {repeated("A1:B3", 2), 12, 12, ""},
    {repeated("A1:B3", 3), 12, 12, "Range too large: \"A1:B3\" has 6 cells, 18 in the formula, more than the limit of 12"},
    {"=SUM(A1:B3)+MAX(C1:C7)", 12, 6,
     "Range too large: \"C1:C7\" has 7 cells, 13 in the formula, more than the limit of 12"},
    {"=SUM(A1:C4)", 12, 12, ""},
    {"=SUM(A1;A1:C5)", 12, 1, "Range too large: \"A1:C5\" has 15 cells, more than the limit of 12"},
    // A short formula repeating a range the limit allows once asks for no more than the limit.
    {repeated("A1:J10000", 20), 100000, 100000,
     "Range too large: \"A1:J10000\" has 100000 cells, 200000 in the formula, more than the limit of 100000"},
};

TEST(RangeBudget, SharedByAllRangesOfAFormula) {
    for (const Budget& c : kBudgets) {
        SCOPED_TRACE(c.formula.substr(0, 40));
        TestHost host;
        ParserDriver driver;
        driver.vSetCalcCollection(&host);
        driver.vSetMaxRangeCells(c.limit);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(c.formula));
        EXPECT_EQ(root != nullptr, *c.error == '\0');
        EXPECT_EQ(driver.oGetErrorMsg(), c.error);
        EXPECT_EQ(host.lookups.size(), c.lookups);
    }
}

// Each formula starts with the whole budget, and a host's own expansion
// outside a parse stands alone, even after a formula failed half way.
TEST(RangeBudget, FreshForEveryFormula) {
    ParserDriver driver;
    driver.vSetMaxRangeCells(10);
    EXPECT_EQ(driver.poParseExpression(repeated("A1:A6", 2)), nullptr);
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<ASTNode> root(driver.poParseExpression("=SUM(A1:B5)"));
        EXPECT_TRUE(root);
        const std::vector<ASTNode*> nodes = driver.oGetMultipleCellsVarList("A1", "E2");
        EXPECT_EQ(nodes.size(), 10u);
        for (ASTNode* node : nodes) delete node;
    }
}

}  // namespace
