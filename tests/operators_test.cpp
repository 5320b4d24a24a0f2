#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "testhost.h"

namespace {

// text is checked only where given; a NaN value matches any NaN.
struct Case { const char* formula; double value; const char* text; std::uint32_t type; std::uint32_t err; };

void expectEvaluation(const Case& c, TestHost* host) {
    SCOPED_TRACE(c.formula);
    const Evaluation e = evaluateFormula(c.formula, host);
    ASSERT_TRUE(e.parsed);
    if (std::isnan(c.value)) {
        EXPECT_TRUE(std::isnan(e.value)) << e.value;
    } else {
        EXPECT_EQ(e.value, c.value);
    }
    if (c.text != nullptr) {
        EXPECT_EQ(e.text, c.text);
    }
    EXPECT_EQ(e.type, c.type);
    EXPECT_EQ(e.error, c.err);
}

// A1 holds text; B1:B3 hold a number, a text and nothing; C1 holds NaN without an error.
const Case kOperators[] = {
    {"=1/0", INFINITY, nullptr, ExprNumber, ErrDomain}, {"=0/0", NAN, nullptr, ExprNumber, ErrDomain},
    {"=1/C1", NAN, nullptr, ExprNumber, ErrNone}, {"=5%0", NAN, nullptr, ExprNumber, ErrDomain},
    {"=-7%3", -1.0, nullptr, ExprNumber, ErrNone}, {"=7%-3", 1.0, nullptr, ExprNumber, ErrNone},
    {"=5.5%2", 1.5, nullptr, ExprNumber, ErrNone}, {"=0^(-1)", INFINITY, nullptr, ExprNumber, ErrInfinite},
    {"=0^0", 1.0, nullptr, ExprNumber, ErrNone}, {"=(-8)^(1/3)", NAN, nullptr, ExprNumber, ErrDomain},
    {"=(-8)^3", -512.0, nullptr, ExprNumber, ErrNone}, {"=(-2)^0.5", NAN, nullptr, ExprNumber, ErrDomain},
    {"=(-0)^(-1)", -INFINITY, nullptr, ExprNumber, ErrInfinite}, {"=2^\"a\"", 1.0, nullptr, ExprNumber, ErrWrongType},
    {"=2*\"a\"", 0.0, nullptr, ExprNumber, ErrWrongType}, {"=1+\"a\"", 1.0, "1a", ExprString, ErrNone},
    {"=\"a\"+\"b\"", 0.0, "ab", ExprString, ErrNone}, {"=1+2", 3.0, "12", ExprNumber, ErrNone},
    {"=1+2+\"a\"", 3.0, "12a", ExprString, ErrNone}, {"=2*3+\"a\"", 6.0, "6a", ExprString, ErrNone},
    {"=SUM(1;2;\"a\")", 3.0, "12a", ExprString, ErrNone}, {"=SUM(B1:B3)", 5.0, "x", ExprString, ErrNoValue},
    {"=-\"a\"", 0.0, nullptr, ExprNumber, ErrWrongType}, {"=(1/0)-1", INFINITY, nullptr, ExprNumber, ErrDomain},
    {"=2>1", 1.0, "1", ExprNumber, ErrNone}, {"=1>2", 0.0, "0", ExprNumber, ErrNone},
    {"=2>=2", 1.0, nullptr, ExprNumber, ErrNone}, {"=3<=2", 0.0, nullptr, ExprNumber, ErrNone},
    {"=0.1+0.2=0.3", 0.0, nullptr, ExprNumber, ErrNone}, {"=\"abc\"=\"ABC\"", 0.0, nullptr, ExprNumber, ErrNone},
    {"=\"ab\"<\"abc\"", 1.0, nullptr, ExprNumber, ErrNone}, {"=\"b\">=\"ab\"", 1.0, nullptr, ExprNumber, ErrNone},
    {"=\"B\"<\"a\"", 1.0, nullptr, ExprNumber, ErrNone}, {"=10<9", 0.0, nullptr, ExprNumber, ErrNone},
    {"=\"10\"<\"9\"", 1.0, nullptr, ExprNumber, ErrNone}, {"=1<\"a\"", 1.0, nullptr, ExprNumber, ErrNone},
    {"=1000000=\"1e+06\"", 1.0, nullptr, ExprNumber, ErrNone}, {"=(1/0)>1", 1.0, nullptr, ExprNumber, ErrDomain},
    {"=\"a\"=1/0", 0.0, nullptr, ExprNumber, ErrDomain}, {"=A1>0", 1.0, nullptr, ExprNumber, ErrNone},
    {"=A1<=\"abc\"", 1.0, nullptr, ExprNumber, ErrNone},
    // Squares take a short cut that must agree with pow.
    {"=(-3)^2", 9.0, "9", ExprNumber, ErrNone}, {"=1.1^2", std::pow(1.1, 2.0), nullptr, ExprNumber, ErrNone},
    {"=C1^2", NAN, nullptr, ExprNumber, ErrNone}, {"=(1/0)^2", INFINITY, nullptr, ExprNumber, ErrDomain},
};

TEST(Operators, ArithmeticAndComparisons) {
    TestHost host;
    host.setText("A1", "abc");
    host.setNumber("B1", 5.0);
    host.setText("B2", "x");
    host.setEmpty("B3");
    host.setNumber("C1", NAN);
    for (const Case& c : kOperators) expectEvaluation(c, &host);
}

// An operand with a chosen type and error, to drive the shared error rules directly.
class Probe : public ASTNode {
public:
    Probe(std::uint32_t type, std::uint32_t err) : type_(type), err_(err) {}
    double f64Evaluate() const override { return 1.0; }
    void vPrintNode(std::stringstream&, unsigned int) const override {}
    std::uint32_t exprType() override { return type_; }
    std::uint32_t errType() override { return err_; }

private:
    std::uint32_t type_;
    std::uint32_t err_;
};

using Nodes = std::vector<ASTNode*>;
struct NodeCase { const char* name; ASTNode* (*build)(); std::uint32_t err; };
const NodeCase kBaseRules[] = {
    {"pair: text left hides error right",
     [] () -> ASTNode* { return new CNSubtract(new Probe(ExprString, ErrNone), new Probe(ExprNumber, ErrDomain)); },
     ErrWrongType},
    {"pair: left error wins",
     [] () -> ASTNode* { return new CNSubtract(new Probe(ExprNumber, ErrInfinite), new Probe(ExprNumber, ErrDomain)); },
     ErrInfinite},
    {"pair: host code passes through",
     [] () -> ASTNode* { return new CNMultiply(new CNConstant(1.0), new Probe(ExprNumber, 42)); }, 42},
    {"pair: absent operand",
     [] () -> ASTNode* { return new CNSubtract(new CNConstant(1.0), nullptr); }, ErrInvalidArg},
    {"list: text before later error",
     [] () -> ASTNode* { return new CNMin(Nodes{new Probe(ExprString, ErrNone), new Probe(ExprNumber, ErrDomain)}); },
     ErrWrongType},
    {"list: own error before own type",
     [] () -> ASTNode* { return new CNMax(Nodes{new Probe(ExprString, ErrNoValue), new Probe(ExprNumber, ErrDomain)}); },
     ErrNoValue},
    {"single: text with error",
     [] () -> ASTNode* { return new CNNegate(new Probe(ExprString, ErrDomain)); }, ErrWrongType},
    {"add pair: no-type operand",
     [] () -> ASTNode* { return new CNAdd(new CNConstant(1.0), new Probe(ExprNoType, ErrNone)); }, ErrWrongType},
    {"add list: no-type after text",
     [] () -> ASTNode* { return new CNAdd(Nodes{new CNStringConstant("a"), new Probe(ExprNoType, ErrNone)}); },
     ErrWrongType},
    {"add pair: types before errors",
     [] () -> ASTNode* { return new CNAdd(new Probe(ExprString, ErrDomain), new Probe(ExprNoType, ErrNone)); },
     ErrWrongType},
    {"add list: error before type",
     [] () -> ASTNode* { return new CNAdd(Nodes{new Probe(ExprString, ErrDomain), new Probe(ExprNoType, ErrNone)}); },
     ErrDomain},
    {"comparison: no-type right before left error",
     [] () -> ASTNode* { return new CNLess(new Probe(ExprNumber, ErrDomain), new Probe(ExprNoType, ErrNone)); },
     ErrWrongType},
};

// A host node that notes each question it is asked, so that the order in
// which the rules ask a host's own nodes stays as written.
class Recorder : public ASTNode {
public:
    Recorder(const char* name, std::string& log) : name_(name), log_(log) {}
    double f64Evaluate() const override {
        note("value");
        return 1.0;
    }
    void vPrintNode(std::stringstream&, unsigned int) const override {}
    std::uint32_t exprType() override {
        note("type");
        return ExprNumber;
    }
    std::uint32_t errType() override {
        note("error");
        return ErrNone;
    }

private:
    void note(const char* question) const { log_ += std::string(name_) + "." + question + " "; }
    const char* name_;
    std::string& log_;
};

TEST(Operators, HostNodesAreAskedInTheRulesOrder) {
    std::string log;
    std::unique_ptr<ASTNode> difference(new CNSubtract(new Recorder("a", log), new Recorder("b", log)));
    difference->errType();
    EXPECT_EQ(log, "a.type b.type a.error b.error ");
    log.clear();
    std::unique_ptr<ASTNode> comparison(new CNLess(new Recorder("a", log), new Recorder("b", log)));
    comparison->f64Evaluate();
    EXPECT_EQ(log, "a.type b.type a.value b.value ");
}

TEST(Operators, SharedErrorRules) {
    for (const NodeCase& c : kBaseRules) {
        SCOPED_TRACE(c.name);
        std::unique_ptr<ASTNode> root(c.build());
        EXPECT_EQ(root->errType(), c.err);
    }
    std::unique_ptr<ASTNode> sum(new CNAdd(new CNStringConstant("a"), new Probe(ExprNoType, ErrNone)));
    EXPECT_EQ(sum->exprType(), ExprNoType);
}

// Address-sanitizer frames are about ten times larger, so that build walks a shorter chain on the same stack.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CELLFORMULA_TEST_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(CELLFORMULA_TEST_ASAN)
constexpr int kChainTerms = 3000;
#else
constexpr int kChainTerms = 10000;
#endif

// Checking must stay linear in the tree: a rule that asks an operand twice per level blows up.
TEST(Operators, LongChainsAndNestedConditionsReturn) {
    std::string chain = "=1";
    for (int term = 1; term < kChainTerms; ++term) chain += "+1";
    std::string nest = "1";
    for (int depth = 0; depth < 30; ++depth) nest = "IF(" + nest + ">0;1;2)";
    ExpressionParser::ParserDriver driver;
    for (const std::string& formula : {chain, "=" + nest}) {
        SCOPED_TRACE(formula.substr(0, 40));
        std::unique_ptr<ASTNode> root(driver.poParseExpression(formula));
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->exprType(), ExprNumber);
        EXPECT_EQ(root->errType(), ErrNone);
        EXPECT_EQ(root->f64Evaluate(), formula == chain ? kChainTerms : 1.0);
    }
}

}  // namespace
