#ifndef CELLFORMULA_ARITHMETICRULES_H
#define CELLFORMULA_ARITHMETICRULES_H

// The arithmetic rules, written once over either kind of operands (see
// operands.h), for the node classes and for the compiled program alike.
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "operands.h"

namespace cellformula::rules {

// When both operands are NaN, the processor keeps the sign and payload of
// its first source operand, and a compiler may swap the operands of a
// commutative operation, so which NaN survives would depend on how each way
// of evaluating was compiled. On x86-64 the instruction is written out with
// the left operand first, so every path keeps the left NaN without a call;
// elsewhere one out-of-line copy of each, shared by every path, does the same
// (hidden, so that the library calls it directly).
#if defined(__x86_64__)
inline double added(double left, double right) {
#if defined(__AVX__)
    double total;
    asm("vaddsd %2, %1, %0" : "=x"(total) : "x"(left), "x"(right));
    return total;
#else
    asm("addsd %1, %0" : "+x"(left) : "x"(right));
    return left;
#endif
}

inline double multiplied(double left, double right) {
#if defined(__AVX__)
    double product;
    asm("vmulsd %2, %1, %0" : "=x"(product) : "x"(left), "x"(right));
    return product;
#else
    asm("mulsd %1, %0" : "+x"(left) : "x"(right));
    return left;
#endif
}
#else
[[gnu::noinline, gnu::visibility("hidden")]] double added(double left, double right);
[[gnu::noinline, gnu::visibility("hidden")]] double multiplied(double left, double right);
#endif

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
    return operandsError<hasNoType>(operands);
}

// Text if any operand is text, no type if any has none; a pair asks both
// operands, a range stops at the first without a type.
template <typename Operands>
[[gnu::always_inline]] inline std::uint32_t sumType(Operands& operands) {
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
    const std::uint32_t error = operandsError<isNotNumber>(operands);
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
    const std::uint32_t error = operandsError<isNotNumber>(operands);
    if (error != ErrNone) return error;
    const double base = operands.number(0);
    const double exponent = operands.number(1);
    if (base == 0.0 && exponent < 0.0) return ErrInfinite;
    double integralPart = 0.0;
    if (base < 0.0 && std::modf(exponent, &integralPart) != 0.0) return ErrDomain;
    return ErrNone;
}

}  // namespace cellformula::rules

#endif
