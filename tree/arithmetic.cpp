#include "arithmetic.h"

#include <cmath>

using cellformula::EvaluationScope;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

// ---------------------------------------------------------------- CNNegate

CNNegate::CNNegate(ASTNode* operand) : CNSingleChildNode(operand, "- negate") {}

double CNNegate::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

double CNNegate::numberWithin(EvaluationScope& scope) const {
    return -numberOf(*poChild, scope);
}

// ---------------------------------------------------------------- CNAdd

CNAdd::CNAdd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "+ add") {}

CNAdd::CNAdd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "+ add") {}

double CNAdd::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNAdd::exprType() {
    return cellformula::evaluateType(*this);
}

std::uint32_t CNAdd::errType() {
    return cellformula::evaluateError(*this);
}

std::string CNAdd::stringEvaluate() const {
    return cellformula::evaluateText(*this);
}

namespace {

std::uint32_t sumType(const CNAdd& sum, EvaluationScope& scope) {
    // Sums nest deeply (SUM(a;b;c) and a+b+c nest to the left) and every
    // level asks its operands' type again, so one call works it out once.
    double remembered = 0.0;
    if (scope.recall(&sum, remembered)) return static_cast<std::uint32_t>(remembered);
    std::uint32_t type = ExprNumber;
    if (sum.oChildren.empty()) {
        const std::uint32_t left = typeOf(*sum.poLeft, scope);
        const std::uint32_t right = typeOf(*sum.poRight, scope);
        if (left != ExprNumber || right != ExprNumber) {
            type = (left == ExprNoType || right == ExprNoType) ? ExprNoType : ExprString;
        }
    } else {
        for (const ASTNode* child : sum.oChildren) {
            const std::uint32_t childType = typeOf(*child, scope);
            if (childType == ExprNoType) {
                type = ExprNoType;
                break;
            }
            if (childType == ExprString) type = ExprString;
        }
    }
    scope.remember(&sum, static_cast<double>(type));
    return type;
}

// Like the shared operand rule, but a text operand is welcome: only an
// operand without a type is wrong.
std::uint32_t sumError(const CNAdd& sum, EvaluationScope& scope) {
    if (sum.oChildren.empty()) {
        if (typeOf(*sum.poLeft, scope) == ExprNoType) return ErrWrongType;
        if (typeOf(*sum.poRight, scope) == ExprNoType) return ErrWrongType;
        const std::uint32_t leftError = errorOf(*sum.poLeft, scope);
        if (leftError != ErrNone) return leftError;
        return errorOf(*sum.poRight, scope);
    }
    for (const ASTNode* child : sum.oChildren) {
        const std::uint32_t error = errorOf(*child, scope);
        if (error != ErrNone) return error;
        if (typeOf(*child, scope) == ExprNoType) return ErrWrongType;
    }
    return ErrNone;
}

}  // namespace

double CNAdd::numberWithin(EvaluationScope& scope) const {
    if (isPairForm()) return numberOf(*poLeft, scope) + numberOf(*poRight, scope);
    double total = 0.0;
    for (const ASTNode* child : oChildren) total += numberOf(*child, scope);
    return total;
}

std::string CNAdd::textWithin(EvaluationScope& scope) const {
    if (isPairForm()) return textOf(*poLeft, scope) + textOf(*poRight, scope);
    std::string text;
    for (const ASTNode* child : oChildren) text += textOf(*child, scope);
    return text;
}

std::uint32_t CNAdd::typeWithin(EvaluationScope& scope) const {
    return sumType(*this, scope);
}

std::uint32_t CNAdd::errorWithin(EvaluationScope& scope) const {
    return sumError(*this, scope);
}

// ---------------------------------------------------------------- CNSubtract, CNMultiply

CNSubtract::CNSubtract(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "- subtract") {}

double CNSubtract::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

double CNSubtract::numberWithin(EvaluationScope& scope) const {
    const double left = numberOf(*poLeft, scope);
    return left - numberOf(*poRight, scope);
}

CNMultiply::CNMultiply(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "* multiply") {}

double CNMultiply::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

double CNMultiply::numberWithin(EvaluationScope& scope) const {
    const double left = numberOf(*poLeft, scope);
    return left * numberOf(*poRight, scope);
}

// ---------------------------------------------------------------- CNDivide, CNModulo

namespace {

// Division and remainder share one test: the operand rule, then a zero divisor.
std::uint32_t divisorError(const CNManyChildrenNode& node, std::uint32_t operandsError, EvaluationScope& scope) {
    if (operandsError != ErrNone) return operandsError;
    return numberOf(*node.poRight, scope) == 0.0 ? ErrDomain : ErrNone;
}

}  // namespace

CNDivide::CNDivide(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "/ divide") {}

double CNDivide::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNDivide::errType() {
    return cellformula::evaluateError(*this);
}

double CNDivide::numberWithin(EvaluationScope& scope) const {
    const double left = numberOf(*poLeft, scope);
    return left / numberOf(*poRight, scope);
}

std::uint32_t CNDivide::errorWithin(EvaluationScope& scope) const {
    return divisorError(*this, operandsError(scope), scope);
}

CNModulo::CNModulo(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "% modulo") {}

double CNModulo::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNModulo::errType() {
    return cellformula::evaluateError(*this);
}

double CNModulo::numberWithin(EvaluationScope& scope) const {
    const double left = numberOf(*poLeft, scope);
    return std::fmod(left, numberOf(*poRight, scope));
}

std::uint32_t CNModulo::errorWithin(EvaluationScope& scope) const {
    return divisorError(*this, operandsError(scope), scope);
}

// ---------------------------------------------------------------- CNPower

CNPower::CNPower(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "^ power") {}

double CNPower::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNPower::errType() {
    return cellformula::evaluateError(*this);
}

double CNPower::numberWithin(EvaluationScope& scope) const {
    const double base = numberOf(*poLeft, scope);
    const double exponent = numberOf(*poRight, scope);
    // Squares are common in formulas; pow(x, 2) is exactly x * x, which
    // compilers rely on too, and costs a fraction of the general routine.
    if (exponent == 2.0) return base * base;
    return std::pow(base, exponent);
}

std::uint32_t CNPower::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operands = operandsError(scope);
    if (operands != ErrNone) return operands;
    const double base = numberOf(*poLeft, scope);
    const double exponent = numberOf(*poRight, scope);
    if (base == 0.0 && exponent < 0.0) return ErrInfinite;
    double integralPart = 0.0;
    if (base < 0.0 && std::modf(exponent, &integralPart) != 0.0) return ErrDomain;
    return ErrNone;
}
