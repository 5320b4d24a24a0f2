#include "mathfunctions.h"

#include <cmath>

using cellformula::Evaluation;
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

// A one-operand function: its value from the C library; those with a domain
// add a test of the operand's value to the shared operand rule.
std::uint32_t domainError(const CNSingleChildNode& node, std::uint32_t operandError, std::uint32_t (*domain)(double),
                          Evaluation& evaluation) {
    if (operandError != ErrNone) return operandError;
    return domain(numberOf(*node.poChild, evaluation));
}

}  // namespace

CNSin::CNSin(ASTNode* operand) : CNSingleChildNode(operand, "sin sinus") {}

double CNSin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSin::numberWithin(Evaluation& evaluation) const {
    return std::sin(numberOf(*poChild, evaluation));
}

CNCos::CNCos(ASTNode* operand) : CNSingleChildNode(operand, "cos cosinus") {}

double CNCos::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNCos::numberWithin(Evaluation& evaluation) const {
    return std::cos(numberOf(*poChild, evaluation));
}

CNTan::CNTan(ASTNode* operand) : CNSingleChildNode(operand, "tan tangent") {}

double CNTan::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNTan::numberWithin(Evaluation& evaluation) const {
    return std::tan(numberOf(*poChild, evaluation));
}

CNAsin::CNAsin(ASTNode* operand) : CNSingleChildNode(operand, "asin arcsinus") {}

double CNAsin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAsin::numberWithin(Evaluation& evaluation) const {
    return std::asin(numberOf(*poChild, evaluation));
}

std::uint32_t CNAsin::errorWithin(Evaluation& evaluation) const {
    return domainError(*this, operandError(evaluation), withinUnitRange, evaluation);
}

CNAcos::CNAcos(ASTNode* operand) : CNSingleChildNode(operand, "acos arccosinus") {}

double CNAcos::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAcos::numberWithin(Evaluation& evaluation) const {
    return std::acos(numberOf(*poChild, evaluation));
}

std::uint32_t CNAcos::errorWithin(Evaluation& evaluation) const {
    return domainError(*this, operandError(evaluation), withinUnitRange, evaluation);
}

CNAtan::CNAtan(ASTNode* operand) : CNSingleChildNode(operand, "atan arctangent") {}

double CNAtan::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAtan::numberWithin(Evaluation& evaluation) const {
    return std::atan(numberOf(*poChild, evaluation));
}

CNSqrt::CNSqrt(ASTNode* operand) : CNSingleChildNode(operand, "sqrt square root") {}

double CNSqrt::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSqrt::numberWithin(Evaluation& evaluation) const {
    return std::sqrt(numberOf(*poChild, evaluation));
}

std::uint32_t CNSqrt::errorWithin(Evaluation& evaluation) const {
    return domainError(*this, operandError(evaluation), notNegative, evaluation);
}

CNLn::CNLn(ASTNode* operand) : CNSingleChildNode(operand, "ln natural logarithm") {}

double CNLn::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLn::numberWithin(Evaluation& evaluation) const {
    return std::log(numberOf(*poChild, evaluation));
}

std::uint32_t CNLn::errorWithin(Evaluation& evaluation) const {
    return domainError(*this, operandError(evaluation), positive, evaluation);
}


// ---------------------------------------------------------------- CNAtan2

CNAtan2::CNAtan2(ASTNode* left, ASTNode* right)
    : CNManyChildrenNode(left, right, "atan2 arctangent with 2 params") {}

double CNAtan2::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAtan2::numberWithin(Evaluation& evaluation) const {
    // The second argument is the ordinate and is evaluated first.
    const double ordinate = numberOf(*poRight, evaluation);
    const double abscissa = numberOf(*poLeft, evaluation);
    return std::atan2(ordinate, abscissa);
}

// ---------------------------------------------------------------- CNLog

CNLog::CNLog(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "log base 10 logarithm") {}

double CNLog::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}


double CNLog::numberWithin(Evaluation& evaluation) const {
    // Base 10 goes through log10 so that LOG(1000) is exactly 3; the base is
    // evaluated once and reused for the quotient.
    const double base = numberOf(*poRight, evaluation);
    const double x = numberOf(*poLeft, evaluation);
    if (base == 10.0) return std::log10(x);
    return std::log(x) / std::log(base);
}

std::uint32_t CNLog::errorWithin(Evaluation& evaluation) const {
    const std::uint32_t operands = operandsError(evaluation);
    if (operands != ErrNone) return operands;
    const double x = numberOf(*poLeft, evaluation);
    const double base = numberOf(*poRight, evaluation);
    if (x == 0.0 || base == 0.0 || base == 1.0) return ErrInfinite;
    if (x < 0.0 || base < 0.0) return ErrDomain;
    return ErrNone;
}
