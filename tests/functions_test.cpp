#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "testhost.h"

namespace {

// text is checked only where given; a NaN value matches any NaN.
struct Case { const char* formula; double value; const char* text; std::uint32_t type; std::uint32_t err; };

// A1 holds 4 (no text); C1:C3 hold 0, 7 and nothing; D1:D3 hold 1, 5, 2; E1 carries the host's
// unmaskable error; F1 holds NaN without an error.
void expectTable(const Case* begin, const Case* end) {
    TestHost host;
    host.setNumber("A1", 4.0);
    host.setNumber("C1", 0.0);
    host.setNumber("C2", 7.0);
    host.setEmpty("C3");
    host.setNumber("D1", 1.0);
    host.setNumber("D2", 5.0);
    host.setNumber("D3", 2.0);
    host.setNumber("E1", 1.0);
    host.setError("E1", ErrUnmaskable);
    host.setNumber("F1", NAN);
    for (const Case* c = begin; c != end; ++c) {
        SCOPED_TRACE(c->formula);
        const Evaluation e = evaluateFormula(c->formula, &host);
        ASSERT_TRUE(e.parsed);
        if (std::isnan(c->value)) {
            EXPECT_TRUE(std::isnan(e.value)) << e.value;
        } else {
            EXPECT_EQ(e.value, c->value);
        }
        if (c->text != nullptr) {
            EXPECT_EQ(e.text, c->text);
        }
        EXPECT_EQ(e.type, c->type);
        EXPECT_EQ(e.error, c->err);
    }
}

const Case kMath[] = {
    {"=SIN(PI())", 1.2246467991473532e-16, nullptr, ExprNumber, ErrNone},
    {"=COS(0)", 1.0, nullptr, ExprNumber, ErrNone}, {"=TAN(0)+ATAN(0)", 0.0, nullptr, ExprNumber, ErrNone},
    {"=ASIN(1)", 1.5707963267948966, nullptr, ExprNumber, ErrNone},
    {"=ASIN(1.0000001)", NAN, nullptr, ExprNumber, ErrDomain}, {"=ACOS(-2)", NAN, nullptr, ExprNumber, ErrDomain},
    {"=SQRT(0)", 0.0, nullptr, ExprNumber, ErrNone}, {"=SQRT(-4)", NAN, nullptr, ExprNumber, ErrDomain},
    {"=LN(0)", -INFINITY, nullptr, ExprNumber, ErrInfinite}, {"=LN(-1)", NAN, nullptr, ExprNumber, ErrDomain},
    {"=LOG(100)", 2.0, nullptr, ExprNumber, ErrNone}, {"=LOG(8;2)", 3.0, nullptr, ExprNumber, ErrNone},
    {"=LOG(0)", -INFINITY, nullptr, ExprNumber, ErrInfinite},
    {"=LOG(5;1)", INFINITY, nullptr, ExprNumber, ErrInfinite}, {"=LOG(1;1)", NAN, nullptr, ExprNumber, ErrInfinite},
    {"=LOG(-10)", NAN, nullptr, ExprNumber, ErrDomain}, {"=LOG(10;-2)", NAN, nullptr, ExprNumber, ErrDomain},
    {"=LOG(1000)", 3.0, nullptr, ExprNumber, ErrNone},
    {"=LOG(\"a\";2)", -INFINITY, nullptr, ExprNumber, ErrWrongType},
    {"=SIN(\"a\")", 0.0, nullptr, ExprNumber, ErrWrongType}, {"=SQRT(1/0)", INFINITY, nullptr, ExprNumber, ErrDomain},
    {"=SQRT(F1)", NAN, nullptr, ExprNumber, ErrDomain}, {"=ASIN(F1)", NAN, nullptr, ExprNumber, ErrNone},
    {"=ATAN2(-1;0)", 3.141592653589793, nullptr, ExprNumber, ErrNone},
    {"=ATAN2(0;1)", 1.5707963267948966, nullptr, ExprNumber, ErrNone},
    {"=ATAN2(0;0)", 0.0, nullptr, ExprNumber, ErrNone},
};
TEST(Functions, Math) { expectTable(std::begin(kMath), std::end(kMath)); }

// BIN2DEC("12") throws when evaluated, so its rows prove an operand or branch is skipped.
const Case kLogic[] = {
    {"=AND(1;0)", 0.0, nullptr, ExprNumber, ErrNone}, {"=AND(2;3)", 1.0, nullptr, ExprNumber, ErrNone},
    {"=OR(0;0)", 0.0, nullptr, ExprNumber, ErrNone}, {"=OR(0;-1)", 1.0, nullptr, ExprNumber, ErrNone},
    {"=NOT(0)", 1.0, nullptr, ExprNumber, ErrNone}, {"=NOT(5)", 0.0, nullptr, ExprNumber, ErrNone},
    {"=AND(0;1/0)", 0.0, nullptr, ExprNumber, ErrDomain}, {"=AND(1;\"a\")", 0.0, nullptr, ExprNumber, ErrWrongType},
    {"=AND(0;BIN2DEC(\"12\"))", 0.0, nullptr, ExprNumber, ErrInvalidArg},
    {"=OR(1;BIN2DEC(\"12\"))", 1.0, nullptr, ExprNumber, ErrInvalidArg},
    {"=OR(C1:C3)", 1.0, nullptr, ExprNumber, ErrNoValue}, {"=MIN(3;1;2)", 1.0, nullptr, ExprNumber, ErrNone},
    {"=MAX(D1:D3)", 5.0, nullptr, ExprNumber, ErrNone}, {"=MAX(SQRT(-1);1)", 1.0, nullptr, ExprNumber, ErrDomain},
    {"=AND(5)", 5.0, nullptr, ExprNumber, ErrNone}, {"=MIN(\"a\")", 0.0, "a", ExprString, ErrNone},
    {"=ISERROR(1/0)", 1.0, nullptr, ExprNumber, ErrNone}, {"=ISERROR(1)", 0.0, nullptr, ExprNumber, ErrNone},
    {"=ISERROR(\"a\")", 0.0, nullptr, ExprNumber, ErrNone}, {"=ISERROR(C3)", 1.0, nullptr, ExprNumber, ErrNone},
    {"=ISERROR(E1)", 1.0, nullptr, ExprNumber, ErrUnmaskable}, {"=IF(1;2;3)", 2.0, nullptr, ExprNumber, ErrNone},
    {"=IF(0;2;3)", 3.0, nullptr, ExprNumber, ErrNone}, {"=IF(1;\"yes\";\"no\")", 0.0, "yes", ExprString, ErrNone},
    {"=IF(0;2)", 0.0, "", ExprNoType, ErrWrongType}, {"=IF(5)", 1.0, "", ExprNoType, ErrWrongType},
    {"=IF(1;2;1/0)", 2.0, nullptr, ExprNumber, ErrNone},
    {"=IF(1;2;BIN2DEC(\"12\"))", 2.0, nullptr, ExprNumber, ErrNone},
    {"=IF(\"a\";1;2)", 2.0, nullptr, ExprNumber, ErrWrongType}, {"=IF(1/0;1;2)", 1.0, nullptr, ExprNumber, ErrDomain},
    {"=IF(A1>0;A1;0)+1", 5.0, nullptr, ExprNumber, ErrNone},
};
TEST(Functions, LogicAndConditions) { expectTable(std::begin(kLogic), std::end(kLogic)); }

const Case kText[] = {
    {"=LEFT(\"abcdef\";2)", 0.0, "ab", ExprString, ErrNone}, {"=RIGHT(\"abcdef\";2)", 0.0, "ef", ExprString, ErrNone},
    {"=LEFT(\"abcdef\";6)", 0.0, "abcdef", ExprString, ErrNone},
    {"=RIGHT(\"abcdef\";100)", 0.0, "abcdef", ExprString, ErrNone},
    {"=LEFT(\"abcdef\";2.9)", 0.0, "ab", ExprString, ErrNone},
    {"=LEFT(\"abcdef\";0)", 0.0, "", ExprString, ErrWrongType},
    {"=RIGHT(\"abcdef\";0)", 0.0, "", ExprString, ErrWrongType},
    {"=LEFT(\"abcdef\";-1)", 0.0, "abcdef", ExprString, ErrWrongType},
    {"=LEFT(\"\";3)", 0.0, "", ExprString, ErrWrongType}, {"=LEFT(12345;2)", 0.0, "12", ExprString, ErrNone},
    {"=LEFT(1234567;4)", 0.0, "1.23", ExprString, ErrNone}, {"=RIGHT(0.5;2)", 0.0, ".5", ExprString, ErrNone},
    {"=LEFT(\"abc\";\"2\")", 0.0, "", ExprString, ErrWrongType}, {"=LEFT(A1;1)", 0.0, "4", ExprString, ErrWrongType},
    {"=LEFT(\"abc\";F1)", 0.0, "", ExprString, ErrNone}, {"=LEFT(\"abc\";10^12)", 0.0, "abc", ExprString, ErrNone},
    {"=TEXT(3.14159;\"0.00\")", 0.0, "3.14", ExprString, ErrNone},
    {"=TEXT(12.5;\"0.00\")", 0.0, "12.50", ExprString, ErrWrongType},
    {"=TEXT(12.5;\"00.00\")", 0.0, "12.50", ExprString, ErrNone},
    {"=TEXT(-123;\"0.00\")", 0.0, "-123.00", ExprString, ErrNone},
    {"=TEXT(5;\"000\")", 0.0, "0005", ExprString, ErrWrongType},
    {"=TEXT(5;\".00\")", 0.0, "5.00", ExprString, ErrWrongType},
    {"=TEXT(5;\"#0.00\")", 0.0, "5.00", ExprString, ErrWrongType},
    {"=TEXT(5;0.5)", 0.0, "5.000000", ExprString, ErrWrongType},
    {"=TEXT(\"abc\";\"0.00\")", 0.0, "0.00", ExprString, ErrWrongType},
    {"=TEXT(9.999;\"0.00\")", 0.0, "10.00", ExprString, ErrNone},
    {"=TEXT(-3.14159;\"000.00\")", 0.0, "0-3.14", ExprString, ErrNone},
    {"=TEXT(3.14159;\"0.\")", 0.0, "3.141590", ExprString, ErrNone},
};
TEST(Functions, Text) { expectTable(std::begin(kText), std::end(kText)); }

const Case kRadix[] = {
    {"=DEC2BIN(0)", 0.0, "0", ExprString, ErrNone}, {"=DEC2BIN(5)", 0.0, "101", ExprString, ErrNone},
    {"=DEC2BIN(5.7)", 0.0, "101", ExprString, ErrNone}, {"=DEC2BIN(255)", 0.0, "11111111", ExprString, ErrNone},
    {"=DEC2BIN(256)", 0.0, "00000000", ExprString, ErrInvalidArg},
    {"=DEC2BIN(-1)", 0.0, "0", ExprString, ErrInvalidArg},
    {"=DEC2BIN(10^10)", 0.0, "11111111", ExprString, ErrInvalidArg},
    {"=DEC2BIN(\"5\")", 0.0, "0", ExprString, ErrInvalidArg}, {"=DEC2HEX(255)", 0.0, "FF", ExprString, ErrNone},
    {"=DEC2HEX(4096)", 0.0, "1000", ExprString, ErrNone}, {"=DEC2HEX(10.9)", 0.0, "A", ExprString, ErrNone},
    {"=DEC2HEX(-1)", 0.0, "0", ExprString, ErrInvalidArg}, {"=DEC2HEX(10^10)", 0.0, "FFFFFFFF", ExprString, ErrNone},
    {"=BIN2DEC(\"101\")", 5.0, "5", ExprNumber, ErrNone}, {"=BIN2DEC(101)", 5.0, nullptr, ExprNumber, ErrNone},
    {"=BIN2DEC(\"\")", 0.0, nullptr, ExprNumber, ErrNone},
    {"=BIN2DEC(\"11111111\")", 255.0, nullptr, ExprNumber, ErrNone},
    {"=BIN2DEC(\"111111111\")", 255.0, nullptr, ExprNumber, ErrInvalidArg},
    {"=BIN2HEX(\"11111111\")", 0.0, "FF", ExprString, ErrNone}, {"=BIN2HEX(\"1010\")", 0.0, "A", ExprString, ErrNone},
    {"=BIN2HEX(\"\")", 0.0, "0", ExprString, ErrNone}, {"=HEX2DEC(\"ff\")", 255.0, nullptr, ExprNumber, ErrNone},
    {"=HEX2DEC(\"0x1F\")", 31.0, nullptr, ExprNumber, ErrInvalidArg},
    {"=HEX2DEC(\"1G\")", 1.0, nullptr, ExprNumber, ErrInvalidArg},
    {"=HEX2DEC(\"\")", 0.0, nullptr, ExprNumber, ErrNone}, {"=HEX2BIN(\"FF\")", 0.0, "11111111", ExprString, ErrNone},
    {"=HEX2BIN(\"1a\")", 0.0, "11010", ExprString, ErrNone}, {"=HEX2BIN(12)", 0.0, "10010", ExprString, ErrNone},
    {"=HEX2BIN(\"100\")", 0.0, "00000000", ExprString, ErrInvalidArg},
    {"=HEX2BIN(\"100000000\")", 0.0, "0", ExprString, ErrNone},
};
TEST(Functions, Radix) { expectTable(std::begin(kRadix), std::end(kRadix)); }

// These two evaluations throw instead of returning, after errType has already rejected them.
TEST(Functions, RejectedArgumentsThrowOnEvaluation) {
    ExpressionParser::ParserDriver driver;
    std::unique_ptr<ASTNode> binary(driver.poParseExpression("=BIN2DEC(\"12\")"));
    ASSERT_NE(binary, nullptr);
    EXPECT_EQ(binary->errType(), ErrInvalidArg);
    EXPECT_THROW(binary->f64Evaluate(), std::invalid_argument);
    EXPECT_THROW(binary->stringEvaluate(), std::invalid_argument);
    std::unique_ptr<ASTNode> right(driver.poParseExpression("=RIGHT(\"abc\";-1)"));
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(right->errType(), ErrWrongType);
    EXPECT_THROW(right->stringEvaluate(), std::out_of_range);

    // Classifying a tree never throws, even where its value cannot be computed.
    const std::pair<const char*, std::uint32_t> classified[] = {
        {"=IF(BIN2DEC(\"2\");1;2)*1", ErrWrongType},
        {"=IF(RIGHT(\"a\";-1)=\"x\";1;2)", ErrWrongType},
        {"=TEXT(1;RIGHT(\"a\";-1))", ErrWrongType},
    };
    for (const auto& c : classified) {
        SCOPED_TRACE(c.first);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(c.first));
        ASSERT_NE(root, nullptr);
        EXPECT_NO_THROW(root->exprType());
        EXPECT_EQ(root->errType(), c.second);
    }
}

}  // namespace
