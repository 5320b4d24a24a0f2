#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "testhost.h"

using ExpressionParser::ParserDriver;

namespace {

struct Range { const char* from; const char* to; std::vector<std::string> names; const char* error; };
const Range kRanges[] = {
    {"A1", "B2", {"A1", "B1", "A2", "B2"}, ""}, {"B2", "A1", {"A1", "B1", "A2", "B2"}, ""},
    {"A2", "B1", {"A1", "B1", "A2", "B2"}, ""}, {"$A$1", "b2", {"A1", "B1", "A2", "B2"}, ""},
    {"C3", "C3", {"C3"}, ""}, {"Z9", "aa10", {"Z9", "AA9", "Z10", "AA10"}, ""},
    {"A0", "B2", {}, "Invalid cell name: \"A0\""}, {"A1", "B", {}, "Invalid cell name: \"B\""},
    {"a$0", "$$b1", {}, "Invalid cell name: \"a$0\""}, {"A1", "b$01", {}, "Invalid cell name: \"b$01\""},
    {"a1", "A1000001", {}, "Range too large: \"a1:A1000001\" has 1000001 cells, more than the limit of 1000000"},
    {"ZZZZZZ2147483647", "A1", {},
     "Range too large: \"ZZZZZZ2147483647:A1\" has 689927238117344682 cells, more than the limit of 1000000"},
};

TEST(RangeExpansion, NamesInOrderOrMessage) {
    for (const Range& c : kRanges) {
        SCOPED_TRACE(std::string(c.from) + ":" + c.to);
        TestHost host;
        ParserDriver driver;
        driver.vSetCalcCollection(&host);
        const std::vector<ASTNode*> nodes = driver.oGetMultipleCellsVarList(c.from, c.to);
        EXPECT_EQ(host.lookups, c.names);
        EXPECT_EQ(nodes.size(), c.names.size());
        EXPECT_EQ(driver.oGetErrorMsg(), c.error);
        for (ASTNode* node : nodes) delete node;
    }
}

TEST(RangeExpansion, LimitSetByHostAndNoSource) {
    ParserDriver driver;
    driver.vSetMaxRangeCells(6);
    const std::vector<ASTNode*> six = driver.oGetMultipleCellsVarList("A1", "B3");
    EXPECT_EQ(six.size(), 6u);
    for (ASTNode* node : six) {
        EXPECT_EQ(node->exprType(), ExprNoType);
        EXPECT_EQ(node->errType(), ErrInvalidArg);
        delete node;
    }
    EXPECT_TRUE(driver.oGetMultipleCellsVarList("C3", "A1").empty());
    EXPECT_EQ(driver.oGetErrorMsg(), "Range too large: \"C3:A1\" has 9 cells, more than the limit of 6");
}

// Run under the address sanitizer, this also shows that the nodes made before the failure are freed.
TEST(RangeExpansion, HostExceptionPassesThrough) {
    TestHost host;
    host.throwOn("B2");
    ParserDriver driver;
    driver.vSetCalcCollection(&host);
    EXPECT_THROW(driver.oGetMultipleCellsVarList("A1", "C3"), std::runtime_error);
    EXPECT_EQ(host.lookups, (std::vector<std::string>{"A1", "B1", "C1", "A2", "B2"}));
}

}  // namespace
