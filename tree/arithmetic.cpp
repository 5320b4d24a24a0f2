#include "arithmetic.h"

#include <cmath>

using cellformula::Evaluation;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::typeOf;

// ---------------------------------------------------------------- CNNegate

CNNegate::CNNegate(ASTNode* operand) : CNSingleChildNode(operand, "- negate") {}

double CNNegate::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNNegate::numberWithin(Evaluation& evaluation) const {
    return -numberOf(*poChild, evaluation);
}

// ---------------------------------------------------------------- CNAdd

CNAdd::CNAdd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "+ add") {}

CNAdd::CNAdd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "+ add") {}

double CNAdd::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}




namespace {

std::uint32_t sumType(const CNAdd& sum, Evaluation& evaluation) {
    // Sums nest deeply (SUM(a;b;c) and a+b+c nest to the left) and every
    // level asks its operands' type again, so one call works it out once.
    return evaluation.rememberedType(&sum, [&] {
        if (sum.oChildren.empty()) {
            const std::uint32_t left = typeOf(*sum.poLeft, evaluation);
            const std::uint32_t right = typeOf(*sum.poRight, evaluation);
            if (left == ExprNumber && right == ExprNumber) return static_cast<std::uint32_t>(ExprNumber);
            return static_cast<std::uint32_t>((left == ExprNoType || right == ExprNoType) ? ExprNoType : ExprString);
        }
        std::uint32_t type = ExprNumber;
        for (const ASTNode* child : sum.oChildren) {
            const std::uint32_t childType = typeOf(*child, evaluation);
            if (childType == ExprNoType) return static_cast<std::uint32_t>(ExprNoType);
            if (childType == ExprString) type = ExprString;
        }
        return type;
    });
}

// Like the shared operand rule, but a text operand is welcome: only an
// operand without a type is wrong.
std::uint32_t sumError(const CNAdd& sum, Evaluation& evaluation) {
    if (sum.oChildren.empty()) {
        if (typeOf(*sum.poLeft, evaluation) == ExprNoType) return ErrWrongType;
        if (typeOf(*sum.poRight, evaluation) == ExprNoType) return ErrWrongType;
        const std::uint32_t leftError = errorOf(*sum.poLeft, evaluation);
        if (leftError != ErrNone) return leftError;
        return errorOf(*sum.poRight, evaluation);
    }
    for (const ASTNode* child : sum.oChildren) {
        const std::uint32_t error = errorOf(*child, evaluation);
        if (error != ErrNone) return error;
        if (typeOf(*child, evaluation) == ExprNoType) return ErrWrongType;
    }
    return ErrNone;
}

}  // namespace

double CNAdd::numberWithin(Evaluation& evaluation) const {
    if (isPairForm()) return numberOf(*poLeft, evaluation) + numberOf(*poRight, evaluation);
    double total = 0.0;
    for (const ASTNode* child : oChildren) total += numberOf(*child, evaluation);
    return total;
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

std::uint32_t CNAdd::typeWithin(Evaluation& evaluation) const {
    return sumType(*this, evaluation);
}

std::uint32_t CNAdd::errorWithin(Evaluation& evaluation) const {
    return sumError(*this, evaluation);
}

// ---------------------------------------------------------------- CNSubtract, CNMultiply

CNSubtract::CNSubtract(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "- subtract") {}

double CNSubtract::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSubtract::numberWithin(Evaluation& evaluation) const {
    const double left = numberOf(*poLeft, evaluation);
    return left - numberOf(*poRight, evaluation);
}

CNMultiply::CNMultiply(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "* multiply") {}

double CNMultiply::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMultiply::numberWithin(Evaluation& evaluation) const {
    const double left = numberOf(*poLeft, evaluation);
    return left * numberOf(*poRight, evaluation);
}

// ---------------------------------------------------------------- CNDivide, CNModulo

namespace {

// Division and remainder share one test: the operand rule, then a zero divisor.
std::uint32_t divisorError(const CNManyChildrenNode& node, std::uint32_t operandsError, Evaluation& evaluation) {
    if (operandsError != ErrNone) return operandsError;
    return numberOf(*node.poRight, evaluation) == 0.0 ? ErrDomain : ErrNone;
}

}  // namespace

CNDivide::CNDivide(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "/ divide") {}

double CNDivide::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}


double CNDivide::numberWithin(Evaluation& evaluation) const {
    const double left = numberOf(*poLeft, evaluation);
    return left / numberOf(*poRight, evaluation);
}

std::uint32_t CNDivide::errorWithin(Evaluation& evaluation) const {
    return divisorError(*this, operandsError(evaluation), evaluation);
}

CNModulo::CNModulo(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "% modulo") {}

double CNModulo::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}


double CNModulo::numberWithin(Evaluation& evaluation) const {
    const double left = numberOf(*poLeft, evaluation);
    return std::fmod(left, numberOf(*poRight, evaluation));
}

std::uint32_t CNModulo::errorWithin(Evaluation& evaluation) const {
    return divisorError(*this, operandsError(evaluation), evaluation);
}

// ---------------------------------------------------------------- CNPower

CNPower::CNPower(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "^ power") {}

double CNPower::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}


double CNPower::numberWithin(Evaluation& evaluation) const {
    const double base = numberOf(*poLeft, evaluation);
    const double exponent = numberOf(*poRight, evaluation);
    // Squares are common in formulas; pow(x, 2) is exactly x * x, which
    // compilers rely on too, and costs a fraction of the general routine.
    if (exponent == 2.0) return base * base;
    return std::pow(base, exponent);
}

std::uint32_t CNPower::errorWithin(Evaluation& evaluation) const {
    const std::uint32_t operands = operandsError(evaluation);
    if (operands != ErrNone) return operands;
    const double base = numberOf(*poLeft, evaluation);
    const double exponent = numberOf(*poRight, evaluation);
    if (base == 0.0 && exponent < 0.0) return ErrInfinite;
    double integralPart = 0.0;
    if (base < 0.0 && std::modf(exponent, &integralPart) != 0.0) return ErrDomain;
    return ErrNone;
}
