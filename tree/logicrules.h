#ifndef CELLFORMULA_LOGICRULES_H
#define CELLFORMULA_LOGICRULES_H

// The rules of the logical functions, MIN, MAX and IF, written once over
// either kind of operands (see operands.h), for the node classes and the
// compiled program alike.
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "operands.h"

namespace cellformula::rules {

// AND stops at the first false operand, OR at the first true one; a pair
// reads like a list of two.
template <bool stopWhenTrue, typename Operands>
double connect(Operands& operands) {
    const double decided = stopWhenTrue ? 1.0 : 0.0;
    for (std::size_t i = 0; i < operands.count(); ++i) {
        if ((operands.number(i) != 0.0) == stopWhenTrue) return decided;
    }
    return 1.0 - decided;
}

// Two ordered values are picked as glibc's x86-64 fmin and fmax pick them (on
// a tie the first, so MIN(0;-0) is 0), which spares a call through the PLT
// at every step; a NaN still goes to the library.
inline double smaller(double a, double b) {
#if defined(__x86_64__) && defined(__GLIBC__)
    if (__builtin_expect(!std::isunordered(a, b), 1)) return b < a ? b : a;
#endif
    return std::fmin(a, b);
}

inline double larger(double a, double b) {
#if defined(__x86_64__) && defined(__GLIBC__)
    if (__builtin_expect(!std::isunordered(a, b), 1)) return b > a ? b : a;
#endif
    return std::fmax(a, b);
}

// fmin and fmax pass over a NaN when the other value is a number; a range
// keeps the smaller (larger) value from its first element on.
template <double (*pick)(double, double), typename Operands>
double reduce(Operands& operands) {
    double result = operands.number(0);
    for (std::size_t i = 1; i < operands.count(); ++i) result = pick(result, operands.number(i));
    return result;
}

template <typename Operands>
double negation(Operands& operands) {
    return operands.number(0) == 0.0 ? 1.0 : 0.0;
}

// Every error is absorbed except the host's unmaskable one.
template <typename Operands>
double anyError(Operands& operands) {
    return operands.error(0) != ErrNone ? 1.0 : 0.0;
}

template <typename Operands>
std::uint32_t unmaskedError(Operands& operands) {
    return operands.error(0) == ErrUnmaskable ? ErrUnmaskable : ErrNone;
}

// IF's operands are condition (0), then- (1) and else-branch (2). Every
// question makes the same choice: the branch the condition picks, or 0 when
// that branch is absent. The condition is evaluated once per call.
template <typename Operands>
std::size_t chosenBranch(Operands& operands, bool& conditionTrue) {
    conditionTrue = operands.condition(0) != 0.0;
    const std::size_t branch = conditionTrue ? 1 : 2;
    return operands.present(branch) ? branch : 0;
}

template <typename Operands>
double choice(Operands& operands) {
    if (!operands.present(0)) return 0.0;
    bool conditionTrue = false;
    const std::size_t branch = chosenBranch(operands, conditionTrue);
    if (branch != 0) return operands.number(branch);
    return conditionTrue ? 1.0 : 0.0;
}

template <typename Operands>
std::uint32_t choiceError(Operands& operands) {
    if (!operands.present(0)) return ErrWrongType;
    const std::uint32_t conditionError = operands.error(0);
    if (conditionError != ErrNone) return conditionError;
    if (operands.type(0) != ExprNumber) return ErrWrongType;
    bool conditionTrue = false;
    const std::size_t branch = chosenBranch(operands, conditionTrue);
    return branch != 0 ? operands.error(branch) : ErrWrongType;
}

}  // namespace cellformula::rules

#endif
