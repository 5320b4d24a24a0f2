#ifndef CELLFORMULA_MATHRULES_H
#define CELLFORMULA_MATHRULES_H

// The rules of the mathematical functions, written once over either kind of
// operands (see operands.h), for the node classes and the compiled program.
#include <cmath>
#include <cstdint>

#include "operands.h"

namespace cellformula::rules {

inline double sine(double x) {
    return std::sin(x);
}

inline double cosine(double x) {
    return std::cos(x);
}

inline double tangent(double x) {
    return std::tan(x);
}

inline double arcSine(double x) {
    return std::asin(x);
}

inline double arcCosine(double x) {
    return std::acos(x);
}

inline double arcTangent(double x) {
    return std::atan(x);
}

inline double squareRoot(double x) {
    return std::sqrt(x);
}

inline double naturalLogarithm(double x) {
    return std::log(x);
}

inline std::uint32_t withinUnitRange(double x) {
    return (x < -1.0 || x > 1.0) ? ErrDomain : ErrNone;
}

inline std::uint32_t notNegative(double x) {
    return x >= 0.0 ? ErrNone : ErrDomain;
}

inline std::uint32_t positive(double x) {
    if (x == 0.0) return ErrInfinite;
    return x >= 0.0 ? ErrNone : ErrDomain;
}

// A one-operand function: its value from the C library.
template <double (*function)(double), typename Operands>
double applied(Operands& operands) {
    return function(operands.number(0));
}

// Those with a domain add a test of the operand's value to the shared rule.
template <std::uint32_t (*domain)(double), typename Operands>
std::uint32_t domainError(Operands& operands) {
    const std::uint32_t error = oneOperandError(operands);
    if (error != ErrNone) return error;
    return domain(operands.number(0));
}

// The second argument is the ordinate and is evaluated first.
template <typename Operands>
double angle(Operands& operands) {
    const double ordinate = operands.number(1);
    const double abscissa = operands.number(0);
    return std::atan2(ordinate, abscissa);
}

// Base 10 goes through log10 so that LOG(1000) is exactly 3; the base is
// evaluated once and reused for the quotient.
template <typename Operands>
double logarithm(Operands& operands) {
    const double base = operands.number(1);
    const double x = operands.number(0);
    if (base == 10.0) return std::log10(x);
    return std::log(x) / std::log(base);
}

template <typename Operands>
std::uint32_t logarithmError(Operands& operands) {
    const std::uint32_t error = operandsError<isNotNumber>(operands);
    if (error != ErrNone) return error;
    const double x = operands.number(0);
    const double base = operands.number(1);
    if (x == 0.0 || base == 0.0 || base == 1.0) return ErrInfinite;
    if (x < 0.0 || base < 0.0) return ErrDomain;
    return ErrNone;
}

}  // namespace cellformula::rules

#endif
