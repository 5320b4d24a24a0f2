#include "mathfunctions.h"

#include <cmath>

using cellformula::Answer;
using cellformula::EvaluationScope;
using cellformula::Query;
using cellformula::numberOf;

namespace {

// A one-operand function: its value from the C library, its error from the
// shared operand rule followed by an optional domain test on the operand.
using DomainTest = std::uint32_t (*)(double);

Answer answerFunction(const CNSingleChildNode& node, double (*function)(double), DomainTest domain,
                      Query query, EvaluationScope& scope, std::uint32_t operandError) {
    if (query == Query::Number) return Answer::ofNumber(function(numberOf(*node.poChild, scope)));
    if (query == Query::Error && domain != nullptr) {
        if (operandError != ErrNone) return Answer::ofCode(operandError);
        return Answer::ofCode(domain(numberOf(*node.poChild, scope)));
    }
    return node.CNSingleChildNode::answerWithin(query, scope);
}

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

// The operand rule is only worked out for the classes with a domain test,
// and only when the error is asked for.
#define CELLFORMULA_MATH_FUNCTION(Class, Label, Function, Domain)                                 \
    Class::Class(ASTNode* operand) : CNSingleChildNode(operand, Label) {}                        \
    double Class::f64Evaluate() const { return cellformula::evaluateNumber(*this); }              \
    Answer Class::answerWithin(Query query, EvaluationScope& scope) const {                       \
        const bool checks = query == Query::Error && (Domain) != nullptr;                          \
        return answerFunction(*this, Function, Domain, query, scope,                              \
                              checks ? operandError(scope) : ErrNone);                            \
    }

#define CELLFORMULA_CHECKED_ERROR(Class) \
    std::uint32_t Class::errType() { return cellformula::evaluateError(*this); }

CELLFORMULA_MATH_FUNCTION(CNSin, "sin sinus", static_cast<double (*)(double)>(std::sin), nullptr)
CELLFORMULA_MATH_FUNCTION(CNCos, "cos cosinus", static_cast<double (*)(double)>(std::cos), nullptr)
CELLFORMULA_MATH_FUNCTION(CNTan, "tan tangent", static_cast<double (*)(double)>(std::tan), nullptr)
CELLFORMULA_MATH_FUNCTION(CNAsin, "asin arcsinus", static_cast<double (*)(double)>(std::asin), withinUnitRange)
CELLFORMULA_MATH_FUNCTION(CNAcos, "acos arccosinus", static_cast<double (*)(double)>(std::acos), withinUnitRange)
CELLFORMULA_MATH_FUNCTION(CNAtan, "atan arctangent", static_cast<double (*)(double)>(std::atan), nullptr)
CELLFORMULA_MATH_FUNCTION(CNSqrt, "sqrt square root", squareRoot, notNegative)
CELLFORMULA_MATH_FUNCTION(CNLn, "ln natural logarithm", static_cast<double (*)(double)>(std::log), positive)
CELLFORMULA_CHECKED_ERROR(CNAsin)
CELLFORMULA_CHECKED_ERROR(CNAcos)
CELLFORMULA_CHECKED_ERROR(CNSqrt)
CELLFORMULA_CHECKED_ERROR(CNLn)

#undef CELLFORMULA_MATH_FUNCTION

// ---------------------------------------------------------------- CNAtan2

CNAtan2::CNAtan2(ASTNode* left, ASTNode* right)
    : CNManyChildrenNode(left, right, "atan2 arctangent with 2 params") {}

double CNAtan2::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

Answer CNAtan2::answerWithin(Query query, EvaluationScope& scope) const {
    if (query != Query::Number) return CNManyChildrenNode::answerWithin(query, scope);
    // The second argument is the ordinate and is evaluated first.
    const double ordinate = numberOf(*poRight, scope);
    const double abscissa = numberOf(*poLeft, scope);
    return Answer::ofNumber(std::atan2(ordinate, abscissa));
}

// ---------------------------------------------------------------- CNLog

CNLog::CNLog(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "log base 10 logarithm") {}

double CNLog::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

CELLFORMULA_CHECKED_ERROR(CNLog)

#undef CELLFORMULA_CHECKED_ERROR

Answer CNLog::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: {
            // Base 10 goes through log10 so that LOG(1000) is exactly 3; the
            // base is evaluated once and reused for the quotient.
            const double base = numberOf(*poRight, scope);
            const double x = numberOf(*poLeft, scope);
            if (base == 10.0) return Answer::ofNumber(std::log10(x));
            return Answer::ofNumber(std::log(x) / std::log(base));
        }
        case Query::Error: {
            const std::uint32_t operands = operandsError(scope);
            if (operands != ErrNone) return Answer::ofCode(operands);
            const double x = numberOf(*poLeft, scope);
            const double base = numberOf(*poRight, scope);
            if (x == 0.0 || base == 0.0 || base == 1.0) return Answer::ofCode(ErrInfinite);
            if (x < 0.0 || base < 0.0) return Answer::ofCode(ErrDomain);
            return Answer::ofCode(ErrNone);
        }
        default: return CNManyChildrenNode::answerWithin(query, scope);
    }
}
