#include "mathfunctions.h"

#include <cmath>

#include "operation.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

namespace {

// The one-operand rule, then a test of the operand's value.
template <std::uint32_t (*Test)(double)>
std::uint32_t domainError(Operands& operands) {
    const std::uint32_t error = oneOperandError(operands);
    return error != ErrNone ? error : Test(operands.number(0));
}

std::uint32_t unitDomain(double x) {
    return (x < -1.0 || x > 1.0) ? ErrDomain : ErrNone;
}

std::uint32_t rootDomain(double x) {
    return x >= 0.0 ? ErrNone : ErrDomain;
}

std::uint32_t logarithmDomain(double x) {
    if (x == 0.0) return ErrInfinite;
    return x >= 0.0 ? ErrNone : ErrDomain;
}

template <double (*Function)(double)>
double ofOperand(Operands& operands) {
    return Function(operands.number(0));
}

double sine(double x) { return std::sin(x); }
double cosine(double x) { return std::cos(x); }
double tangent(double x) { return std::tan(x); }
double arcsine(double x) { return std::asin(x); }
double arccosine(double x) { return std::acos(x); }
double arctangent(double x) { return std::atan(x); }
double root(double x) { return std::sqrt(x); }
double logarithm(double x) { return std::log(x); }

// The ordinate is read first.
double angle(Operands& operands) {
    const double y = operands.number(1);
    return std::atan2(y, operands.number(0));
}

// Base 10 exactly takes log10, so LOG(1000) is 3 and not 2.9999999999999996.
double logarithmTo(Operands& operands) {
    if (operands.number(1) == 10.0) return std::log10(operands.number(0));
    const double x = operands.number(0);
    return std::log(x) / std::log(operands.number(1));
}

std::uint32_t logarithmError(Operands& operands) {
    const std::uint32_t error = operandsError(operands, &isNotNumber);
    if (error != ErrNone) return error;
    const double x = operands.number(0);
    const double base = operands.number(1);
    if (x == 0.0 || base == 0.0 || base == 1.0) return ErrInfinite;
    return (x < 0.0 || base < 0.0) ? ErrDomain : ErrNone;
}

std::uint32_t numbersError(Operands& operands) {
    return operandsError(operands, &isNotNumber);
}

constexpr Asks kDomainAsks{kType | kError | kNumber, 0};
constexpr Asks kAllNumbersAsks{kType | kError | kNumber, kType | kError | kNumber};

}  // namespace

extern const Rules kSinRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                              &oneOperandError, &ofOperand<&sine>, nullptr};
extern const Rules kCosRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                              &oneOperandError, &ofOperand<&cosine>, nullptr};
extern const Rules kTanRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                              &oneOperandError, &ofOperand<&tangent>, nullptr};
extern const Rules kAsinRules{Shape::One, Kind::Number, {kNothing, kDomainAsks, kNumbers, kNothing}, nullptr,
                              &domainError<&unitDomain>, &ofOperand<&arcsine>, nullptr};
extern const Rules kAcosRules{Shape::One, Kind::Number, {kNothing, kDomainAsks, kNumbers, kNothing}, nullptr,
                              &domainError<&unitDomain>, &ofOperand<&arccosine>, nullptr};
extern const Rules kAtanRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                              &oneOperandError, &ofOperand<&arctangent>, nullptr};
extern const Rules kSqrtRules{Shape::One, Kind::Number, {kNothing, kDomainAsks, kNumbers, kNothing}, nullptr,
                              &domainError<&rootDomain>, &ofOperand<&root>, nullptr};
extern const Rules kLnRules{Shape::One, Kind::Number, {kNothing, kDomainAsks, kNumbers, kNothing}, nullptr,
                              &domainError<&logarithmDomain>, &ofOperand<&logarithm>, nullptr};
extern const Rules kAtan2Rules{Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                               &numbersError, &angle, nullptr};
extern const Rules kLogRules{Shape::Pair, Kind::Number, {kNothing, kAllNumbersAsks, kNumbers, kNothing}, nullptr,
                             &logarithmError, &logarithmTo, nullptr};

}  // namespace cellformula

CNSin::CNSin(ASTNode* operand) : CNSingleChildNode(operand, "sin sinus") {}
double CNSin::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Sin); }
Operation CNSin::operation() const { return Operation::Sin; }

CNCos::CNCos(ASTNode* operand) : CNSingleChildNode(operand, "cos cosinus") {}
double CNCos::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Cos); }
Operation CNCos::operation() const { return Operation::Cos; }

CNTan::CNTan(ASTNode* operand) : CNSingleChildNode(operand, "tan tangent") {}
double CNTan::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Tan); }
Operation CNTan::operation() const { return Operation::Tan; }

CNAsin::CNAsin(ASTNode* operand) : CNSingleChildNode(operand, "asin arcsinus") {}
double CNAsin::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Asin); }
std::uint32_t CNAsin::errType() { return cellformula::errorAs(*this, Operation::Asin); }
Operation CNAsin::operation() const { return Operation::Asin; }

CNAcos::CNAcos(ASTNode* operand) : CNSingleChildNode(operand, "acos arccosinus") {}
double CNAcos::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Acos); }
std::uint32_t CNAcos::errType() { return cellformula::errorAs(*this, Operation::Acos); }
Operation CNAcos::operation() const { return Operation::Acos; }

CNAtan::CNAtan(ASTNode* operand) : CNSingleChildNode(operand, "atan arctangent") {}
double CNAtan::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Atan); }
Operation CNAtan::operation() const { return Operation::Atan; }

CNSqrt::CNSqrt(ASTNode* operand) : CNSingleChildNode(operand, "sqrt square root") {}
double CNSqrt::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Sqrt); }
std::uint32_t CNSqrt::errType() { return cellformula::errorAs(*this, Operation::Sqrt); }
Operation CNSqrt::operation() const { return Operation::Sqrt; }

CNLn::CNLn(ASTNode* operand) : CNSingleChildNode(operand, "ln natural logarithm") {}
double CNLn::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Ln); }
std::uint32_t CNLn::errType() { return cellformula::errorAs(*this, Operation::Ln); }
Operation CNLn::operation() const { return Operation::Ln; }

CNAtan2::CNAtan2(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "atan2 arctangent with 2 params") {}
double CNAtan2::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Atan2); }
Operation CNAtan2::operation() const { return Operation::Atan2; }

CNLog::CNLog(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "log base 10 logarithm") {}
double CNLog::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Log); }
std::uint32_t CNLog::errType() { return cellformula::errorAs(*this, Operation::Log); }
Operation CNLog::operation() const { return Operation::Log; }
