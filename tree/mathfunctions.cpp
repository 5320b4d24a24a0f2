#include "mathfunctions.h"

#include <cmath>

using cellformula::EvaluationScope;
using cellformula::numberOf;

namespace {

std::uint32_t withinUnitRange(double x) {
    return (x < -1.0 || x > 1.0) ? ErrDomain : ErrNone;
}

std::uint32_t notNegative(double x) {
    return x >= 0.0 ? ErrNone : ErrDomain;
}

std::uint32_t positive(double x) {
    if (x == 0.0) return ErrInfinite;
    return x >= 0.0 ? ErrNone : ErrDomain;
}

double squareRoot(double x) {
    return std::sqrt(x);
}

}  // namespace

// A one-operand function: its value from the C library, its error from the
// shared operand rule followed, for some, by a domain test on the operand.
#define CELLFORMULA_MATH_FUNCTION(Class, Label, Function)                                         \
    Class::Class(ASTNode* operand) : CNSingleChildNode(operand, Label) {}                        \
    double Class::f64Evaluate() const { return cellformula::evaluateNumber(*this); }              \
    double Class::numberWithin(EvaluationScope& scope) const {                                    \
        return Function(numberOf(*poChild, scope));                                               \
    }

#define CELLFORMULA_CHECKED_ERROR(Class, Domain)                                                  \
    std::uint32_t Class::errType() { return cellformula::evaluateError(*this); }                  \
    std::uint32_t Class::errorWithin(EvaluationScope& scope) const {                              \
        const std::uint32_t operand = operandError(scope);                                        \
        if (operand != ErrNone) return operand;                                                   \
        return Domain(numberOf(*poChild, scope));                                                 \
    }

CELLFORMULA_MATH_FUNCTION(CNSin, "sin sinus", static_cast<double (*)(double)>(std::sin))
CELLFORMULA_MATH_FUNCTION(CNCos, "cos cosinus", static_cast<double (*)(double)>(std::cos))
CELLFORMULA_MATH_FUNCTION(CNTan, "tan tangent", static_cast<double (*)(double)>(std::tan))
CELLFORMULA_MATH_FUNCTION(CNAsin, "asin arcsinus", static_cast<double (*)(double)>(std::asin))
CELLFORMULA_MATH_FUNCTION(CNAcos, "acos arccosinus", static_cast<double (*)(double)>(std::acos))
CELLFORMULA_MATH_FUNCTION(CNAtan, "atan arctangent", static_cast<double (*)(double)>(std::atan))
CELLFORMULA_MATH_FUNCTION(CNSqrt, "sqrt square root", squareRoot)
CELLFORMULA_MATH_FUNCTION(CNLn, "ln natural logarithm", static_cast<double (*)(double)>(std::log))
CELLFORMULA_CHECKED_ERROR(CNAsin, withinUnitRange)
CELLFORMULA_CHECKED_ERROR(CNAcos, withinUnitRange)
CELLFORMULA_CHECKED_ERROR(CNSqrt, notNegative)
CELLFORMULA_CHECKED_ERROR(CNLn, positive)

#undef CELLFORMULA_MATH_FUNCTION
#undef CELLFORMULA_CHECKED_ERROR

// ---------------------------------------------------------------- CNAtan2

CNAtan2::CNAtan2(ASTNode* left, ASTNode* right)
    : CNManyChildrenNode(left, right, "atan2 arctangent with 2 params") {}

double CNAtan2::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

double CNAtan2::numberWithin(EvaluationScope& scope) const {
    // The second argument is the ordinate and is evaluated first.
    const double ordinate = numberOf(*poRight, scope);
    const double abscissa = numberOf(*poLeft, scope);
    return std::atan2(ordinate, abscissa);
}

// ---------------------------------------------------------------- CNLog

CNLog::CNLog(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "log base 10 logarithm") {}

double CNLog::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNLog::errType() {
    return cellformula::evaluateError(*this);
}

double CNLog::numberWithin(EvaluationScope& scope) const {
    // Base 10 goes through log10 so that LOG(1000) is exactly 3; the base is
    // evaluated once and reused for the quotient.
    const double base = numberOf(*poRight, scope);
    const double x = numberOf(*poLeft, scope);
    if (base == 10.0) return std::log10(x);
    return std::log(x) / std::log(base);
}

std::uint32_t CNLog::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operands = operandsError(scope);
    if (operands != ErrNone) return operands;
    const double x = numberOf(*poLeft, scope);
    const double base = numberOf(*poRight, scope);
    if (x == 0.0 || base == 0.0 || base == 1.0) return ErrInfinite;
    if (x < 0.0 || base < 0.0) return ErrDomain;
    return ErrNone;
}
