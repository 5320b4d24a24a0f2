// Syntax errors as data: the span of the unexpected token, the names the
// error text quotes, and the invalid corner of a range; the text itself stays.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "formulatokens.h"
#include "testhost.h"

namespace {

struct ErrorCase {
    std::string formula;
    const char* errorText;
    ExpressionParser::SourcePosition begin;
    ExpressionParser::SourcePosition end;
    const char* unexpected;
    std::vector<std::string> expected;
    const char* invalidCellName;
};

const ErrorCase kErrors[] = {
    {"=1+", "1.4: syntax error, unexpected end of file", {1, 4, 3}, {1, 4, 3}, "end of file", {}, ""},
    {"abc", "", {0, 0, 0}, {0, 0, 0}, "", {}, ""},  // no formula: no error at all
    {"=SIN 1", "1.6: syntax error, unexpected integer, expecting '('", {1, 6, 5}, {1, 7, 6}, "integer", {"'('"}, ""},
    {"=1+ATAN2(1;2)", "1.4-8: syntax error, unexpected ATAN2", {1, 4, 3}, {1, 9, 8}, "ATAN2", {}, ""},
    {"=LEFT(\"abc\";1>0)", "1.14: syntax error, unexpected '>', expecting ')' or '+' or '-'", {1, 14, 13},
     {1, 15, 14}, "'>'", {"')'", "'+'", "'-'"}, ""},
    {"=MAX(1,2)", "1.7: syntax error, unexpected invalid token, expecting ')' or ';'", {1, 7, 6}, {1, 8, 7},
     "invalid token", {"')'", "';'"}, ""},
    {"=1\n", "1.3-2.0: syntax error, unexpected end of line", {1, 3, 2}, {2, 1, 3}, "end of line", {}, ""},
    // A newline inside a quoted text moves only the column.
    {"=\"a\nb\"+\n", "1.8-2.0: syntax error, unexpected end of line", {1, 8, 7}, {2, 1, 8}, "end of line", {}, ""},
    // A bare number is read with an "=" in front; offsets stay in the host's text.
    {"12 34", "1.5-6: syntax error, unexpected integer", {1, 5, 3}, {1, 7, 5}, "integer", {}, ""},
    {"=SUM(A1:B2)+MIN(a:b:c)", "Invalid cell name: \"a\"", {1, 17, 16}, {1, 18, 17}, "", {}, "a"},
    {"=SUM(A1 : B2;C1:XY_9)", "Invalid cell name: \"XY_9\"", {1, 17, 16}, {1, 21, 20}, "", {}, "XY_9"},
};

TEST(SyntaxErrors, AsData) {
    TestHost host;
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    std::ostringstream silenced;
    std::streambuf* saved = std::cerr.rdbuf(silenced.rdbuf());
    for (const ErrorCase& c : kErrors) {
        SCOPED_TRACE(c.formula);
        EXPECT_EQ(std::unique_ptr<ASTNode>(driver.poParseExpression(c.formula)), nullptr);
        EXPECT_EQ(driver.oGetErrorMsg(), c.errorText);
        const ExpressionParser::SyntaxError* error = driver.poGetSyntaxError();
        if (*c.errorText == '\0') {
            EXPECT_EQ(error, nullptr);
            continue;
        }
        ASSERT_NE(error, nullptr);
        for (const auto& [got, want] : {std::make_pair(error->oBegin, c.begin), std::make_pair(error->oEnd, c.end)}) {
            EXPECT_EQ(got.s32Line, want.s32Line);
            EXPECT_EQ(got.s32Column, want.s32Column);
            EXPECT_EQ(got.u64Offset, want.u64Offset);
        }
        EXPECT_EQ(error->oUnexpected, c.unexpected);
        EXPECT_EQ(error->oExpected, c.expected);
        EXPECT_EQ(error->oInvalidCellName, c.invalidCellName);
    }
    std::cerr.rdbuf(saved);
}

TEST(SyntaxErrors, ClearedBySuccessAndAbsentForOtherFailures) {
    ExpressionParser::ParserDriver driver;
    std::ostringstream silenced;
    std::streambuf* saved = std::cerr.rdbuf(silenced.rdbuf());
    EXPECT_EQ(driver.poParseExpression("=1+"), nullptr);
    EXPECT_NE(driver.poGetSyntaxError(), nullptr);
    ExpressionParser::ParserDriver copy;
    copy = driver;
    ASSERT_NE(copy.poGetSyntaxError(), nullptr);
    EXPECT_EQ(copy.poGetSyntaxError()->oUnexpected, "end of file");
    std::unique_ptr<ASTNode> tree(driver.poParseExpression("=1"));
    EXPECT_EQ(driver.poGetSyntaxError(), nullptr);
    driver.vSetMaxRangeCells(3);
    EXPECT_EQ(driver.poParseExpression("=SUM(A1:B2)"), nullptr);
    EXPECT_FALSE(driver.oGetErrorMsg().empty());
    EXPECT_EQ(driver.poGetSyntaxError(), nullptr);
    std::cerr.rdbuf(saved);
}

// The unexpected token named in the data is the token our tokens find at its offset.
TEST(SyntaxErrors, SpanIsTheUnexpectedToken) {
    ExpressionParser::ParserDriver driver;
    std::ostringstream silenced;
    std::streambuf* saved = std::cerr.rdbuf(silenced.rdbuf());
    for (const std::string formula : {"=IF(1;2;3;4)", "=--1", "=LOG(A1:A2)", "=1,5", "=(1", "=a b"}) {
        SCOPED_TRACE(formula);
        EXPECT_EQ(driver.poParseExpression(formula), nullptr);
        const ExpressionParser::SyntaxError* error = driver.poGetSyntaxError();
        ASSERT_NE(error, nullptr);
        std::string atOffset = "end of file";
        for (const auto& token : ExpressionParser::FormulaTokens::oGetTokens(formula)) {
            if (token.u64Begin == error->oBegin.u64Offset) {
                EXPECT_EQ(token.u64End, error->oEnd.u64Offset);
                atOffset = std::string(token.oText(formula));
            }
        }
        EXPECT_NE(atOffset, "") << error->oUnexpected;
        EXPECT_EQ(atOffset == "end of file", error->oUnexpected == "end of file");
    }
    std::cerr.rdbuf(saved);
}

}  // namespace
