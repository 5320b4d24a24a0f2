#include "arithmetic.h"

#include <cmath>

#include "numbers.h"
#include "operation.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

namespace {

double sum(Operands& operands) {
    const auto add = [](double left, double right) { return left + right; };
    if (!operands.isList()) {
        const double left = operands.number(0);
        return leftNanFirst(left, operands.number(1), add);
    }
    double total = 0.0;
    for (std::size_t i = 0; i < operands.count(); ++i) total = leftNanFirst(total, operands.number(i), add);
    return total;
}

// Text if any operand is text, no type if any has none; a pair asks both
// operands, a range stops at the first without a type.
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

// A sum's text is its operands' texts one after another, even of numbers.
void concatenation(Operands& operands, std::string& text) {
    text = operands.takeText(0);
    for (std::size_t i = 1; i < operands.count(); ++i) text += operands.text(i);
}

// Both operands' numbers, the left one read first.
template <typename Operation>
double pairOf(Operands& operands, Operation operation) {
    const double left = operands.number(0);
    return leftNanFirst(left, operands.number(1), operation);
}

std::uint32_t divisorError(Operands& operands) {
    const std::uint32_t error = operandsError(operands, &isNotNumber);
    if (error != ErrNone) return error;
    return operands.number(1) == 0.0 ? ErrDomain : ErrNone;
}

std::uint32_t powerError(Operands& operands) {
    const std::uint32_t error = operandsError(operands, &isNotNumber);
    if (error != ErrNone) return error;
    const double base = operands.number(0);
    const double exponent = operands.number(1);
    if (base == 0.0 && exponent < 0.0) return ErrInfinite;
    double integral = 0.0;
    if (base < 0.0 && std::modf(exponent, &integral) != 0.0) return ErrDomain;
    return ErrNone;
}

std::uint32_t numbersError(Operands& operands) {
    return operandsError(operands, &isNotNumber);
}

constexpr Asks kDivisorAsks{kType | kError, kType | kError | kNumber};
constexpr Asks kAllNumbersAsks{kType | kError | kNumber, kType | kError | kNumber};

}  // namespace

extern const Rules kNegateRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                                &oneOperandError, [](Operands& operands) { return -operands.number(0); }, nullptr};

extern const Rules kAddRules{
    Shape::Pair, Kind::FromOperands, {kTypes, kTypesErrors, kNumbers, kTexts}, &sumType,
    [](Operands& operands) { return operandsError(operands, &hasNoType); }, &sum, &concatenation};

extern const Rules kSubtractRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr, &numbersError,
    [](Operands& operands) { return pairOf(operands, [](double l, double r) { return l - r; }); }, nullptr};

extern const Rules kMultiplyRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr, &numbersError,
    [](Operands& operands) { return pairOf(operands, [](double l, double r) { return l * r; }); }, nullptr};

extern const Rules kDivideRules{
    Shape::Pair, Kind::Number, {kNothing, kDivisorAsks, kNumbers, kNothing}, nullptr, &divisorError,
    [](Operands& operands) { return pairOf(operands, [](double l, double r) { return l / r; }); }, nullptr};

extern const Rules kModuloRules{
    Shape::Pair, Kind::Number, {kNothing, kDivisorAsks, kNumbers, kNothing}, nullptr, &divisorError,
    [](Operands& operands) { return pairOf(operands, [](double l, double r) { return std::fmod(l, r); }); },
    nullptr};

extern const Rules kPowerRules{
    Shape::Pair, Kind::Number, {kNothing, kAllNumbersAsks, kNumbers, kNothing}, nullptr, &powerError,
    [](Operands& operands) { return pairOf(operands, [](double l, double r) { return std::pow(l, r); }); },
    nullptr};

}  // namespace cellformula

CNNegate::CNNegate(ASTNode* operand) : CNSingleChildNode(operand, "- negate") {}
double CNNegate::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Negate); }
Operation CNNegate::operation() const { return Operation::Negate; }

CNAdd::CNAdd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "+ add") {}
CNAdd::CNAdd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "+ add") {}
double CNAdd::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Add); }
std::uint32_t CNAdd::exprType() { return cellformula::typeAs(*this, Operation::Add); }
std::uint32_t CNAdd::errType() { return cellformula::errorAs(*this, Operation::Add); }
std::string CNAdd::stringEvaluate() const { return cellformula::textAs(*this, Operation::Add); }
Operation CNAdd::operation() const { return Operation::Add; }

CNSubtract::CNSubtract(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "- subtract") {}
double CNSubtract::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Subtract); }
Operation CNSubtract::operation() const { return Operation::Subtract; }

CNMultiply::CNMultiply(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "* multiply") {}
double CNMultiply::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Multiply); }
Operation CNMultiply::operation() const { return Operation::Multiply; }

CNDivide::CNDivide(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "/ divide") {}
double CNDivide::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Divide); }
std::uint32_t CNDivide::errType() { return cellformula::errorAs(*this, Operation::Divide); }
Operation CNDivide::operation() const { return Operation::Divide; }

CNModulo::CNModulo(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "% modulo") {}
double CNModulo::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Modulo); }
std::uint32_t CNModulo::errType() { return cellformula::errorAs(*this, Operation::Modulo); }
Operation CNModulo::operation() const { return Operation::Modulo; }

CNPower::CNPower(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "^ power") {}
double CNPower::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Power); }
std::uint32_t CNPower::errType() { return cellformula::errorAs(*this, Operation::Power); }
Operation CNPower::operation() const { return Operation::Power; }
