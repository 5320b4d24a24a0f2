#ifndef CELLFORMULA_NUMBERS_H
#define CELLFORMULA_NUMBERS_H

// Arithmetic on two values whose result is the same on every processor.
// Never installed.
#include <cmath>

namespace cellformula {

// When both operands are NaN, a processor keeps one of them by its own
// choice of operand order; the left one survives here, tested in plain code.
template <typename Operation>
double leftNanFirst(double left, double right, Operation operation) {
    if (std::isnan(left) && std::isnan(right)) return left;
    return operation(left, right);
}

// MIN and MAX: a single NaN is skipped as fmin and fmax skip it, two NaNs
// keep the left, and of two equal values (0 and -0 among them) the first wins.
inline double smaller(double first, double second) {
    if (std::isnan(first)) return std::isnan(second) ? first : second;
    if (std::isnan(second)) return first;
    return second < first ? second : first;
}

inline double larger(double first, double second) {
    if (std::isnan(first)) return std::isnan(second) ? first : second;
    if (std::isnan(second)) return first;
    return second > first ? second : first;
}

}  // namespace cellformula

#endif
