#include "arithmetic.h"

#include <cmath>

#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;
using cellformula::operandsOf;

namespace {

// Each rule is written once, over either kind of operands (see operands.h).

// When both operands are NaN, the processor keeps the sign and payload of
// one of them, and which one depends on how the compiler ordered a
// commutative operation. One out-of-line copy of each, shared by every way
// of evaluating, keeps every NaN's bits the same on every path.
[[gnu::noinline]] double added(double left, double right) {
    return left + right;
}

[[gnu::noinline]] double multiplied(double left, double right) {
    return left * right;
}

template <typename Operands>
double negated(Operands& operands) {
    return -operands.number(0);
}

// A pair adds its two values; a range adds from 0.0 in list order.
template <typename Operands>
double sum(Operands& operands) {
    if (!operands.isList()) {
        const double left = operands.number(0);
        return added(left, operands.number(1));
    }
    double total = 0.0;
    for (std::size_t i = 0; i < operands.count(); ++i) total = added(total, operands.number(i));
    return total;
}

// Like the shared operand rule, but a text operand is welcome: only an
// operand without a type is wrong.
template <typename Operands>
std::uint32_t sumError(Operands& operands) {
    return cellformula::operandsError<cellformula::hasNoType>(operands);
}

// Text if any operand is text, no type if any has none; a pair asks both
// operands, a range stops at the first without a type.
template <typename Operands>
std::uint32_t sumType(Operands& operands) {
    if (!operands.isList()) {
        const std::uint32_t left = operands.type(0);
        const std::uint32_t right = operands.type(1);
        if (left == ExprNumber && right == ExprNumber) return ExprNumber;
        return (left == ExprNoType || right == ExprNoType) ? ExprNoType : ExprString;
    }
    std::uint32_t type = ExprNumber;
    for (std::size_t i = 0; i < operands.count(); ++i) {
        const std::uint32_t operandType = operands.type(i);
        if (operandType == ExprNoType) return ExprNoType;
        if (operandType == ExprString) type = ExprString;
    }
    return type;
}

template <typename Operands>
double difference(Operands& operands) {
    const double left = operands.number(0);
    return left - operands.number(1);
}

template <typename Operands>
double product(Operands& operands) {
    const double left = operands.number(0);
    return multiplied(left, operands.number(1));
}

template <typename Operands>
double quotient(Operands& operands) {
    const double left = operands.number(0);
    return left / operands.number(1);
}

template <typename Operands>
double remainder(Operands& operands) {
    const double left = operands.number(0);
    return std::fmod(left, operands.number(1));
}

// Division and remainder share one test: the operand rule, then a zero divisor.
template <typename Operands>
std::uint32_t divisorError(Operands& operands) {
    const std::uint32_t error = cellformula::operandsError<cellformula::isNotNumber>(operands);
    if (error != ErrNone) return error;
    return operands.number(1) == 0.0 ? ErrDomain : ErrNone;
}

template <typename Operands>
double power(Operands& operands) {
    const double base = operands.number(0);
    const double exponent = operands.number(1);
    // Squares are common in formulas; pow(x, 2) is exactly x * x, which
    // compilers rely on too, and costs a fraction of the general routine.
    if (exponent == 2.0) return base * base;
    return std::pow(base, exponent);
}

template <typename Operands>
std::uint32_t powerError(Operands& operands) {
    const std::uint32_t error = cellformula::operandsError<cellformula::isNotNumber>(operands);
    if (error != ErrNone) return error;
    const double base = operands.number(0);
    const double exponent = operands.number(1);
    if (base == 0.0 && exponent < 0.0) return ErrInfinite;
    double integralPart = 0.0;
    if (base < 0.0 && std::modf(exponent, &integralPart) != 0.0) return ErrDomain;
    return ErrNone;
}

constexpr StackRules kNegateRules{cellformula::operandRules<CNNegate,
    &negated<const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kAddRules{cellformula::operandRules<CNAdd,
    &sum<const StackOperands>,
    &sumError<const StackOperands>>()};
constexpr StackRules kSubtractRules{cellformula::operandRules<CNSubtract,
    &difference<const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kMultiplyRules{cellformula::operandRules<CNMultiply,
    &product<const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kDivideRules{cellformula::operandRules<CNDivide,
    &quotient<const StackOperands>,
    &divisorError<const StackOperands>>()};
constexpr StackRules kModuloRules{cellformula::operandRules<CNModulo,
    &remainder<const StackOperands>,
    &divisorError<const StackOperands>>()};
constexpr StackRules kPowerRules{cellformula::operandRules<CNPower,
    &power<const StackOperands>,
    &powerError<const StackOperands>>()};

}  // namespace

// ---------------------------------------------------------------- CNNegate

CNNegate::CNNegate(ASTNode* operand) : CNSingleChildNode(operand, "- negate") {}

double CNNegate::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNNegate::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return negated(operands);
}

const StackRules* CNNegate::stackRules() const {
    return &kNegateRules;
}

// ---------------------------------------------------------------- CNAdd

CNAdd::CNAdd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "+ add") {}

CNAdd::CNAdd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "+ add") {}

double CNAdd::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAdd::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return sum(operands);
}

// A sum's text is its operands' texts one after another, each appended to
// the one text, so a long chain of sums stays linear.
bool CNAdd::isConcatenation(Evaluation&, std::vector<const ASTNode*>& parts) const {
    if (isPairForm()) {
        parts.push_back(poLeft);
        parts.push_back(poRight);
    } else {
        parts.insert(parts.end(), oChildren.begin(), oChildren.end());
    }
    return true;
}

void CNAdd::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    cellformula::appendConcatenation(*this, evaluation, text);
}

// Sums nest deeply (SUM(a;b;c) and a+b+c nest to the left) and every level
// asks its operands' type again, so one call works it out once.
std::uint32_t CNAdd::typeWithin(Evaluation& evaluation) const {
    return evaluation.rememberedType(this, [&] {
        auto operands = operandsOf(*this, evaluation);
        return sumType(operands);
    });
}

std::uint32_t CNAdd::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return sumError(operands);
}

const StackRules* CNAdd::stackRules() const {
    return &kAddRules;
}

// ---------------------------------------------------------------- CNSubtract, CNMultiply

CNSubtract::CNSubtract(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "- subtract") {}

double CNSubtract::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSubtract::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return difference(operands);
}

const StackRules* CNSubtract::stackRules() const {
    return &kSubtractRules;
}

CNMultiply::CNMultiply(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "* multiply") {}

double CNMultiply::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMultiply::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return product(operands);
}

const StackRules* CNMultiply::stackRules() const {
    return &kMultiplyRules;
}

// ---------------------------------------------------------------- CNDivide, CNModulo

CNDivide::CNDivide(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "/ divide") {}

double CNDivide::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNDivide::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return quotient(operands);
}

std::uint32_t CNDivide::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return divisorError(operands);
}

const StackRules* CNDivide::stackRules() const {
    return &kDivideRules;
}

CNModulo::CNModulo(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "% modulo") {}

double CNModulo::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNModulo::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return remainder(operands);
}

std::uint32_t CNModulo::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return divisorError(operands);
}

const StackRules* CNModulo::stackRules() const {
    return &kModuloRules;
}

// ---------------------------------------------------------------- CNPower

CNPower::CNPower(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "^ power") {}

double CNPower::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNPower::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return power(operands);
}

std::uint32_t CNPower::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return powerError(operands);
}

const StackRules* CNPower::stackRules() const {
    return &kPowerRules;
}
