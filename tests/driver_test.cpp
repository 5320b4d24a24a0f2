// The driver's entry: which texts are formulas, the life cycle of one driver
// over many parses, the host interface and the located error text.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "testhost.h"

namespace {

struct NumberCase {
    const char* text;
    bool isNumber;
};

const NumberCase kNumberTexts[] = {
    {"42", true},          {"-7", true},    {"+7", true},           {" 42", true},    {"3.25", true},
    {".5", true},           {"-.5", true},   {"007", true},          {"1.5e3", true},  {"12 34", true},
    {"--5", true},         {"2147483648.5", true},                  {"", false},      {" ", false},
    {"42 ", false},        {"5.", false},   {"1e5", false},         {"0x1A", false},  {"1,5", false},
    {"inf", false},        {"nan", false},  {"A1", false},          {"2147483648", false},
};

TEST(Driver, BareNumbersAreFormulas) {
    for (const NumberCase& c : kNumberTexts) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(SpreadSheetHelper::bIsNumber(c.text), c.isNumber);
    }
}

struct EntryCase {
    std::string text;
    bool parsed;
    double value;
    const char* error;
};

const EntryCase kEntries[] = {
    {"42", true, 42, ""},
    {" 42", true, 42, ""},
    {"42 ", false, 0, ""},
    {"A1", false, 0, ""},
    {"", false, 0, ""},
    {"=(1.5)", true, 1.5, ""},
    {"=((1))", true, 1, ""},
    {"=+1", true, 1, ""},
    {"==1", false, 0, "1.2: syntax error, unexpected '='"},
};

TEST(Driver, EntryAcceptsFormulasAndBareNumbers) {
    for (const EntryCase& c : kEntries) {
        SCOPED_TRACE(c.text);
        ExpressionParser::ParserDriver driver;
        std::unique_ptr<ASTNode> root(driver.poParseExpression(c.text));
        ASSERT_EQ(root != nullptr, c.parsed);
        if (root) {
            EXPECT_EQ(root->f64Evaluate(), c.value);
        }
        EXPECT_EQ(driver.oGetErrorMsg(), c.error);
    }
}

TEST(Driver, ByteZeroEndsTheFirstFormula) {
    ExpressionParser::ParserDriver driver;
    // A second formula after the byte 0 replaces the first one's tree.
    std::unique_ptr<ASTNode> second(driver.poParseExpression(std::string("=1\0=2", 5)));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->f64Evaluate(), 2.0);
    // A failing rest frees the tree the first formula handed over.
    EXPECT_EQ(driver.poParseExpression(std::string("=1\0+2", 5)), nullptr);
    EXPECT_EQ(driver.oGetErrorMsg(), "1.4: syntax error, unexpected '+', expecting end of file or '='");
}

TEST(Driver, EachParseReportsOnItsOwnText) {
    ExpressionParser::ParserDriver driver;
    EXPECT_EQ(driver.poParseExpression("=1+"), nullptr);
    EXPECT_EQ(driver.oGetErrorMsg(), "1.4: syntax error, unexpected end of file");
    EXPECT_EQ(driver.poParseExpression("=SIN 1"), nullptr);
    EXPECT_EQ(driver.oGetErrorMsg(), "1.6: syntax error, unexpected integer, expecting '('");
    // A parse that stopped early leaves none of its text for the next one.
    EXPECT_EQ(driver.poParseExpression("=1 2 3 4"), nullptr);
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=7"));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->f64Evaluate(), 7.0);
    EXPECT_EQ(driver.oGetErrorMsg(), "");
    EXPECT_EQ(driver.poParseExpression("no formula"), nullptr);
    EXPECT_EQ(driver.oGetErrorMsg(), "");
}

TEST(Driver, VariablesReadTheHostsCurrentValues) {
    TestHost host;
    host.setNumber("A1", 4);
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=A1+A1*INPUT(\"Flow rate\")+$a$1"));
    ASSERT_TRUE(root);
    EXPECT_EQ(host.lookups, (std::vector<std::string>{"A1", "A1", "Flow rate", "$a$1"}));
    host.number("A1") = 10;
    EXPECT_EQ(root->f64Evaluate(), 10.0);  // Flow rate and $a$1 have no value: 0
    EXPECT_EQ(root->errType(), static_cast<std::uint32_t>(ErrNoValue));
}

struct RecordCase {
    const char* name;
    std::uint32_t type;
    bool number, text;
    std::uint32_t hostError, error;
};

TEST(Driver, VariableNodesClassifyTheirRecord) {
    const RecordCase cases[] = {
        {"number with value", ExprNumber, true, false, ErrNone, ErrNone},
        {"number without value", ExprNumber, false, true, ErrNone, ErrNoValue},
        {"text with only a number", ExprString, true, false, ErrNone, ErrNoValue},
        {"host error wins", ExprNumber, true, true, 5, 5},
        {"unknown host code", ExprNumber, true, true, 42, 42},
    };
    for (const RecordCase& c : cases) {
        SCOPED_TRACE(c.name);
        double value = 2.5;
        std::string text = "t";
        CNVariable node(VariableRecord{c.type, c.number ? &value : nullptr, c.text ? &text : nullptr, c.hostError});
        EXPECT_EQ(node.errType(), c.error);
        EXPECT_EQ(node.exprType(), c.type);
        EXPECT_EQ(node.f64Evaluate(), c.number ? 2.5 : 0.0);
        EXPECT_EQ(node.stringEvaluate(), c.text ? "t" : "");
    }
}

TEST(Driver, WithoutSourceVariablesHaveNoType) {
    ExpressionParser::ParserDriver driver;
    const VariableRecord record = driver.getVariableFrom("A1");
    EXPECT_EQ(record.u32Type, static_cast<std::uint32_t>(ExprNoType));
    EXPECT_EQ(record.pf64Value, nullptr);
    EXPECT_EQ(record.poText, nullptr);
    EXPECT_EQ(record.u32Error, static_cast<std::uint32_t>(ErrInvalidArg));
    const Evaluation result = evaluateFormula("=A1");
    EXPECT_TRUE(result.parsed);
    EXPECT_EQ(result.type, static_cast<std::uint32_t>(ExprNoType));
    EXPECT_EQ(result.error, static_cast<std::uint32_t>(ErrInvalidArg));
}

TEST(Driver, HostExceptionsPassThroughAndFreeEverything) {
    TestHost host;
    host.throwOn("B1");
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    EXPECT_THROW(driver.poParseExpression("=SUM(1;\"a\";A1+B1)"), std::runtime_error);
    EXPECT_THROW(driver.poParseExpression("=MAX(A1:B2)"), std::runtime_error);
    EXPECT_THROW(driver.poParseExpression(std::string("=A1\0=B1", 7)), std::runtime_error);
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=A1"));
    EXPECT_TRUE(root);
}

TEST(Driver, CopyAssignmentClonesTheSourceOnlyWhenMissing) {
    TestHost host;
    TestHost other;
    ExpressionParser::ParserDriver from;
    from.vSetCalcCollection(&host);
    EXPECT_EQ(from.poParseExpression("=1+"), nullptr);

    ExpressionParser::ParserDriver empty;
    empty = from;
    EXPECT_EQ(empty.oGetErrorMsg(), from.oGetErrorMsg());
    other.setNumber("A1", 3);
    std::unique_ptr<ASTNode> root(empty.poParseExpression("=A1"));
    EXPECT_TRUE(host.lookups.empty());  // the clone answered, not the original

    ExpressionParser::ParserDriver kept;
    kept.vSetCalcCollection(&other);
    kept = from;
    std::unique_ptr<ASTNode> fromOther(kept.poParseExpression("=A1"));
    ASSERT_TRUE(fromOther);
    EXPECT_EQ(fromOther->f64Evaluate(), 3.0);
    const ExpressionParser::ParserDriver& same = kept;
    kept.oGetErrorMsg() = "kept";
    kept = same;
    EXPECT_EQ(kept.oGetErrorMsg(), "kept");
}

// A source that parses again on the same driver while it is asked a name.
class ReenteringSource : public CalculationCollectionBase {
public:
    explicit ReenteringSource(ExpressionParser::ParserDriver& driver) : driver_(driver) {}
    VariableRecord oGetVariable(const std::string&) override {
        inner = driver_.poParseExpression("=1+2");
        innerError = driver_.oGetErrorMsg();
        return VariableRecord{ExprNumber, &value_, nullptr, ErrNone};
    }
    CalculationCollectionBase* poClone() override { return nullptr; }

    ASTNode* inner = nullptr;
    std::string innerError;

private:
    ExpressionParser::ParserDriver& driver_;
    double value_ = 4.0;
};

TEST(Driver, ParsingAgainDuringAParseFailsCleanly) {
    ExpressionParser::ParserDriver driver;
    ReenteringSource source(driver);
    driver.vSetCalcCollection(&source);
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=A1*2"));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->f64Evaluate(), 8.0);
    EXPECT_EQ(source.inner, nullptr);
    EXPECT_FALSE(source.innerError.empty());
    EXPECT_TRUE(driver.oGetErrorMsg().empty());
}

}  // namespace
