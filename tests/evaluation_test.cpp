// The evaluation engine on hostile shapes, a host's own nodes inside library
// trees, and the one-call result against the three separate calls.
#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include "testhost.h"

namespace {

std::string repeat(const std::string& piece, int times) {
    std::string text;
    text.reserve(piece.size() * static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) text += piece;
    return text;
}

// A formula nested `depth` times: opening pieces, the innermost operand, closing pieces.
std::string nested(const std::string& open, const std::string& innermost, const std::string& close, int depth) {
    return "=" + repeat(open, depth) + innermost + repeat(close, depth);
}

// Runs work on a thread whose whole stack is 256 KB, as hosts' worker threads often have.
void onSmallStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

struct Shape {
    const char* name;
    std::string formula;
    double value;  // NaN where the value is a text or not checked
};

constexpr int kDepth = 100000;

std::vector<Shape> deepShapes() {
    const double unchecked = std::nan("");
    return {
        {"left-deep sum", "=" + repeat("1+", 999999) + "1", 1000000.0},
        {"parentheses", nested("(", "1", ")", kDepth), 1.0},
        {"SQRT", nested("SQRT(", "1", ")", kDepth), 1.0},
        {"unary minus", nested("-(", "1", ")", kDepth), 1.0},
        {"IF in then-branch", nested("IF(1;", "2", ")", kDepth), 2.0},
        {"IF in compared condition", nested("IF(", "1", ">0;1;0)", kDepth), 1.0},
        {"LEFT in LEFT", nested("LEFT(", "\"abc\"", ";2)", kDepth), unchecked},
        {"LOG in base", nested("LOG(2;", "2", ")", kDepth), unchecked},
        {"LOG in value", nested("LOG(", "2", ";2)", kDepth), unchecked},
        {"TEXT in value", nested("TEXT(", "1", ";\"0.0\")", kDepth), unchecked},
        {"TEXT in format", nested("TEXT(1;", "\"0.0\"", ")", kDepth), unchecked},
        {"radix round trips", nested("BIN2DEC(DEC2BIN(", "1", "))", kDepth), 1.0},
        {"power chain", "=" + repeat("1^", kDepth) + "1", 1.0},
        {"right-nested division", nested("1/(", "1", ")", kDepth), 1.0},
        {"comparisons", "=" + repeat("1<", kDepth) + "1", unchecked},
        {"text concatenation", "=" + repeat("\"a\"+", kDepth) + "\"a\"", unchecked},
        {"MIN", "=MIN(" + repeat("1;", kDepth) + "1)", 1.0},
    };
}

// Every public operation of the tree and of its compiled program, and
// deletion, complete, here or on a small stack.
void evaluateEverything(std::unique_ptr<ASTNode>& root, double expected) {
    const std::uint32_t type = root->exprType();
    const std::uint32_t error = root->errType();
    const double value = root->f64Evaluate();
    const std::string text = root->stringEvaluate();
    if (!std::isnan(expected)) {
        EXPECT_EQ(type, ExprNumber);
        EXPECT_EQ(value, expected);
    }
    EXPECT_FALSE(text.empty());
    const cellformula::FormulaResult all = cellformula::oEvaluateAll(*root);
    EXPECT_EQ(all.u32Error, error);
    const cellformula::CompiledFormula program(*root);
    EXPECT_EQ(program.exprType(), type);
    EXPECT_EQ(program.errType(), error);
    EXPECT_EQ(program.stringEvaluate(), text);
    EXPECT_EQ(std::memcmp(&value, &static_cast<const double&>(program.f64Evaluate()), sizeof value), 0);
    root.reset();
}

// One test per shape, so that the slow sanitizer build runs them side by side.
class DeepTrees : public testing::TestWithParam<std::size_t> {};

TEST_P(DeepTrees, EvaluateOnEveryStack) {
    const Shape shape = deepShapes()[GetParam()];
    SCOPED_TRACE(shape.name);
    ExpressionParser::ParserDriver driver;
    std::unique_ptr<ASTNode> root(driver.poParseExpression(shape.formula));
    ASSERT_TRUE(root) << driver.oGetErrorMsg();
    evaluateEverything(root, shape.value);
    root.reset(driver.poParseExpression(shape.formula));
    onSmallStack([&] { evaluateEverything(root, shape.value); });
}

INSTANTIATE_TEST_SUITE_P(Evaluation, DeepTrees, testing::Range<std::size_t>(0, deepShapes().size()));

TEST(Evaluation, DeepOutlinesPrint) {
    ExpressionParser::ParserDriver driver;
    const int depth = 20000;
    // The indentation makes the outline grow with the square of the depth.
    std::unique_ptr<ASTNode> root(driver.poParseExpression(nested("SQRT(", "2", ")", depth)));
    ASSERT_TRUE(root);
    std::size_t lines = 0;
    onSmallStack([&] {
        std::stringstream outline;
        root->vPrintNode(outline, 0);
        const std::string text = outline.str();
        lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    });
    EXPECT_EQ(lines, static_cast<std::size_t>(depth + 1));
}

// A host's node built on a library base that answers every question itself.
class HostOperand : public CNSingleChildNode {
public:
    explicit HostOperand(std::string& log) : CNSingleChildNode(new CNConstant(1.0), "host"), log_(log) {}
    double f64Evaluate() const override { return note("value", 7.0); }
    std::uint32_t exprType() override { return note("type", ExprNumber); }
    std::uint32_t errType() override { return note("error", ErrDomain); }
    std::string stringEvaluate() const override { return note("text", std::string("seven")); }
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override {
        stream << std::string(2 * depth, ' ') << "host line" << std::endl;
    }

private:
    template <typename Answer>
    Answer note(const char* question, Answer answer) const {
        log_ += std::string(question) + " ";
        return answer;
    }
    std::string& log_;
};

// The same on the other base, answering only its value: the base's rules fill in the rest.
class HostPair : public CNManyChildrenNode {
public:
    HostPair() : CNManyChildrenNode(new CNStringConstant("x"), new CNConstant(2.0), "pair") {}
    double f64Evaluate() const override { return 5.0; }
};

TEST(Evaluation, HostNodesOnLibraryBasesAnswerForThemselves) {
    std::string log;
    std::unique_ptr<ASTNode> negation(new CNNegate(new HostOperand(log)));
    EXPECT_EQ(negation->errType(), ErrDomain);
    EXPECT_EQ(log, "type error ");
    EXPECT_EQ(negation->f64Evaluate(), -7.0);
    std::unique_ptr<ASTNode> sum(new CNAdd(new HostOperand(log), new CNStringConstant("!")));
    EXPECT_EQ(sum->stringEvaluate(), "seven!");
    std::stringstream outline;
    negation->vPrintNode(outline, 0);
    EXPECT_EQ(outline.str(), "- negate\n  host line\n");

    std::unique_ptr<ASTNode> pair(new CNMultiply(new HostPair(), new CNConstant(3.0)));
    EXPECT_EQ(pair->f64Evaluate(), 15.0);
    EXPECT_EQ(pair->errType(), ErrWrongType);  // the host pair's own base rule: a text operand
    HostPair alone;
    EXPECT_EQ(alone.errType(), ErrWrongType);
    EXPECT_EQ(alone.stringEvaluate(), "5");
}

// A host's subclass of a library operator whose own rules read numbers alone:
// no shortcut over a tree of numbers may answer for it.
class HostSum : public CNAdd {
public:
    HostSum() : CNAdd(new CNConstant(1.0), new CNConstant(2.0)) {}
    double f64Evaluate() const override { return 9.0; }
    std::uint32_t errType() override { return ErrDomain; }
};

class HostConstant : public CNConstant {
public:
    HostConstant() : CNConstant(1.0) {}
    double f64Evaluate() const override { return 4.0; }
    std::string stringEvaluate() const override { return "four"; }
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override {
        stream << std::string(2 * depth, ' ') << "host constant" << std::endl;
    }
};

// A cell of the host's own class, whose record says 1 while it answers 7.
class HostCell : public CNVariable {
public:
    HostCell() : CNVariable(VariableRecord{ExprNumber, &one_, nullptr, ErrNone}) {}
    double f64Evaluate() const override { return 7.0; }
    std::uint32_t errType() override { return ErrDomain; }

private:
    double one_ = 1.0;
};

TEST(Evaluation, HostSubclassesOfLibraryOperatorsAnswerForThemselves) {
    std::unique_ptr<ASTNode> cell(new CNMultiply(new HostCell(), new CNConstant(2.0)));
    EXPECT_EQ(cell->f64Evaluate(), 14.0);
    EXPECT_EQ(cell->errType(), ErrDomain);
    for (const cellformula::FormulaResult& result :
         {cellformula::oEvaluateAll(*cell), cellformula::CompiledFormula(*cell).oEvaluateAll()}) {
        EXPECT_EQ(result.u32Error, ErrDomain);
        EXPECT_EQ(result.f64Value, 14.0);
    }


    std::unique_ptr<ASTNode> constant(new CNNegate(new HostConstant()));
    EXPECT_EQ(constant->f64Evaluate(), -4.0);
    EXPECT_EQ(cellformula::oEvaluateAll(*constant).f64Value, -4.0);
    EXPECT_EQ(cellformula::CompiledFormula(*constant).f64Evaluate(), -4.0);
    std::unique_ptr<ASTNode> text(new CNAdd(new HostConstant(), new CNStringConstant("!")));
    EXPECT_EQ(text->stringEvaluate(), "four!");
    std::stringstream outline;
    constant->vPrintNode(outline, 0);
    EXPECT_EQ(outline.str(), "- negate\n  host constant\n");

    std::unique_ptr<ASTNode> negation(new CNNegate(new HostSum()));
    EXPECT_EQ(negation->errType(), ErrDomain);
    EXPECT_EQ(negation->f64Evaluate(), -9.0);
    const cellformula::CompiledFormula program(*negation);
    for (const cellformula::FormulaResult& result : {cellformula::oEvaluateAll(*negation), program.oEvaluateAll()}) {
        EXPECT_EQ(result.u32Error, ErrDomain);
        EXPECT_EQ(result.f64Value, -9.0);
    }
    HostSum alone;
    EXPECT_EQ(alone.errType(), ErrDomain);
    EXPECT_EQ(cellformula::oEvaluateAll(alone).u32Error, ErrDomain);
}

// A host's node whose every answer throws: each evaluation path lets the
// host's exception out of the same question.
class RefusingOperand : public ASTNode {
public:
    struct Refusal {};
    double f64Evaluate() const override { throw Refusal{}; }
    void vPrintNode(std::stringstream&, unsigned int) const override {}
    std::uint32_t exprType() override { throw Refusal{}; }
    std::uint32_t errType() override { throw Refusal{}; }
};

TEST(Evaluation, HostExceptionsLeaveEveryPath) {
    std::unique_ptr<ASTNode> tree(new CNAdd(new CNConstant(1.0), new RefusingOperand()));
    const cellformula::CompiledFormula program(*tree);
    const std::function<void()> questions[] = {
        [&] { tree->exprType(); },          [&] { tree->errType(); },
        [&] { tree->f64Evaluate(); },       [&] { cellformula::oEvaluateAll(*tree); },
        [&] { program.exprType(); },        [&] { program.errType(); },
        [&] { program.f64Evaluate(); },     [&] { program.oEvaluateAll(); },
    };
    for (const auto& question : questions) EXPECT_THROW(question(), RefusingOperand::Refusal);
}

// When both operands are NaN the left one's bits survive, and MIN and MAX of
// two equal zeros keep the first, on every way of evaluating. The sign of the
// NaN that 0/0 makes is the processor's, so it is read here, not assumed.
struct SignCase {
    const char* formula;
    bool nan;
    bool negative;  // for a NaN: true when the sign is the opposite of 0/0's
};
const SignCase kSignCases[] = {
    {"=(0/0)+(-(0/0))", true, false}, {"=(-(0/0))+(0/0)", true, true},  {"=(0/0)*(-(0/0))", true, false},
    {"=(-(0/0))*(0/0)", true, true},  {"=(0/0)-(-(0/0))", true, false}, {"=(-(0/0))/(0/0)", true, true},
    {"=(-(0/0))^(0/0)", true, true},  {"=MAX(0/0;-(0/0))", true, false}, {"=MIN(-(0/0);0/0)", true, true},
    {"=MIN(0;-0)", false, false},     {"=MIN(-0;0)", false, true},       {"=MAX(0;-0)", false, false},
    {"=MAX(-0;0)", false, true},      {"=MIN(1;0/0)", false, false},     {"=MAX(0/0;-2)", false, true},
};

TEST(Evaluation, SignsOfNansAndZerosAreTheSameOnEveryPath) {
    volatile double zero = 0.0;
    const bool quotientNegative = std::signbit(zero / zero);
    ExpressionParser::ParserDriver driver;
    for (const SignCase& sign : kSignCases) {
        SCOPED_TRACE(sign.formula);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(sign.formula));
        ASSERT_TRUE(root);
        const cellformula::CompiledFormula program(*root);
        const bool negative = sign.nan ? sign.negative != quotientNegative : sign.negative;
        for (const double value : {root->f64Evaluate(), cellformula::oEvaluateAll(*root).f64Value,
                                   program.f64Evaluate(), program.oEvaluateAll().f64Value}) {
            EXPECT_EQ(std::isnan(value), sign.nan);
            EXPECT_EQ(std::signbit(value), negative);
        }
    }
}

// Classification never throws for the library's nodes, whatever their
// values would raise, and answers with the error of the operand that raises.
struct ClassifyCase {
    const char* formula;
    std::uint32_t type;
    std::uint32_t error;
};
const ClassifyCase kClassifyCases[] = {
    {"=TEXT(1;\"0\"+BIN2DEC(\"x\"))", ExprString, ErrInvalidArg},
    {"=TEXT(1;BIN2HEX(BIN2DEC(\"x\")))", ExprString, ErrInvalidArg},
    {"=TEXT(1;RIGHT(\"a\";-1))", ExprString, ErrWrongType},
    {"=IF(BIN2DEC(\"x\");1;2)", ExprNoType, ErrInvalidArg},
    {"=IF(RIGHT(\"a\";-1)=\"a\";1;2)", ExprNoType, ErrWrongType},
    {"=LEFT(RIGHT(\"ab\";-1);1)", ExprString, ErrWrongType},
    {"=IF(1;2;BIN2DEC(\"x\"))+BIN2DEC(\"y\")", ExprNumber, ErrInvalidArg},
    {"=ISERROR(BIN2DEC(\"x\"))", ExprNumber, ErrNone},
};

TEST(Evaluation, ClassificationNeverThrows) {
    ExpressionParser::ParserDriver driver;
    for (const ClassifyCase& c : kClassifyCases) {
        SCOPED_TRACE(c.formula);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(c.formula));
        ASSERT_TRUE(root);
        const cellformula::CompiledFormula program(*root);
        EXPECT_EQ(root->exprType(), c.type);
        EXPECT_EQ(root->errType(), c.error);
        EXPECT_EQ(program.exprType(), c.type);
        EXPECT_EQ(program.errType(), c.error);
    }
}

// Nodes built by hand with a missing operand answer instead of crashing.
TEST(Evaluation, MissingOperandsAreInvalidArguments) {
    std::unique_ptr<ASTNode> nodes[] = {
        std::make_unique<CNAdd>(new CNConstant(1.0), nullptr), std::make_unique<CNSqrt>(nullptr),
        std::make_unique<CNLess>(nullptr, new CNConstant(1.0)), std::make_unique<CNText>(new CNConstant(1), nullptr),
        std::make_unique<CNMin>(nullptr, nullptr),
    };
    for (auto& node : nodes) {
        SCOPED_TRACE(typeid(*node).name());
        EXPECT_EQ(node->errType(), ErrInvalidArg);
        node->exprType();
        node->f64Evaluate();
        node->stringEvaluate();
        const cellformula::CompiledFormula program(*node);
        EXPECT_EQ(program.oEvaluateAll().u32Error, ErrInvalidArg);
        EXPECT_EQ(cellformula::oEvaluateAll(*node).u32Error, ErrInvalidArg);
        std::stringstream outline;
        node->vPrintNode(outline, 0);
        EXPECT_FALSE(outline.str().empty());
    }
}

// A program may be copied and moved; a moved-from one answers as empty.
TEST(Evaluation, CompiledFormulasCopyAndMove) {
    ExpressionParser::ParserDriver driver;
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=LEFT(\"abc\";2)"));
    cellformula::CompiledFormula program(*root);
    const cellformula::CompiledFormula copy(program);
    cellformula::CompiledFormula moved(std::move(program));
    EXPECT_EQ(copy.stringEvaluate(), "ab");
    EXPECT_EQ(moved.stringEvaluate(), "ab");
    EXPECT_EQ(program.exprType(), ExprNoType);  // NOLINT(bugprone-use-after-move): the contract says what it gives
    EXPECT_EQ(program.errType(), ErrInvalidArg);
    EXPECT_EQ(program.f64Evaluate(), 0.0);
    EXPECT_EQ(program.stringEvaluate(), "");
    EXPECT_EQ(program.oEvaluateAll().u32Error, ErrInvalidArg);
    program = copy;
    EXPECT_EQ(program.stringEvaluate(), "ab");
}

const char* const kResultFormulas[] = {
    "=1+2*3", "=\"a\"+1", "=IF(A1>0;\"yes\";\"no\")", "=IF(0;2)", "=LEFT(B1;2)", "=RIGHT(\"abc\";-1)",
    "=BIN2DEC(\"12\")", "=TEXT(12.5;\"0.00\")", "=SUM(A1:A3)", "=C1*2", "=1/0", "=ISERROR(1/0)",
    "=LOG(8;2)", "=DEC2BIN(300)", "=HEX2DEC(\"ff\")", "=B1=\"hello\"", "=IF(BIN2DEC(\"2\");1;2)*1",
    "=A1*2+(1/0)", "=(1/0)+A1*A1", "=A1/A2*3", "=IF(BIN2DEC(\"2\");1;2)", "=IF(RIGHT(\"a\";-1)=\"\";1;2)",
    "=(MIN(A1;A2;C1))*2", "=A2^0.5*A1", "=A1-A2/(A1-4)",
};

TEST(Evaluation, OneCallAndCompiledEqualTheThreeCalls) {
    TestHost host;
    host.setNumber("A1", 4.0);
    host.setText("B1", "hello");
    host.setNumber("A2", -1.5);
    host.setText("A3", "t");
    host.setEmpty("C1");
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    for (const char* formula : kResultFormulas) {
        SCOPED_TRACE(formula);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(formula));
        ASSERT_TRUE(root);
        const std::uint32_t type = root->exprType();
        const std::uint32_t error = root->errType();
        std::string expected;
        try {
            expected = type == ExprNumber ? QuandelUtils::sstringify(root->f64Evaluate()) : root->stringEvaluate();
        } catch (const std::exception& thrown) {
            expected = std::string("throws ") + typeid(thrown).name();
        }
        const cellformula::CompiledFormula program(*root);
        const std::function<cellformula::FormulaResult()> oneCalls[] = {
            [&] { return cellformula::oEvaluateAll(*root); },
            [&] { return program.oEvaluateAll(); },
            [&] {
                cellformula::FormulaResult separate;
                separate.u32Type = program.exprType();
                separate.u32Error = program.errType();
                if (separate.u32Type == ExprNumber) {
                    separate.f64Value = program.f64Evaluate();
                } else {
                    separate.oText = program.stringEvaluate();
                }
                return separate;
            },
        };
        for (const auto& oneCall : oneCalls) {
            std::string actual;
            try {
                const cellformula::FormulaResult result = oneCall();
                EXPECT_EQ(result.u32Type, type);
                EXPECT_EQ(result.u32Error, error);
                actual = type == ExprNumber ? QuandelUtils::sstringify(result.f64Value) : result.oText;
            } catch (const std::exception& thrown) {
                actual = std::string("throws ") + typeid(thrown).name();
            }
            EXPECT_EQ(actual, expected);
        }
    }
}

}  // namespace
