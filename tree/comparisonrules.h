#ifndef CELLFORMULA_COMPARISONRULES_H
#define CELLFORMULA_COMPARISONRULES_H

// The comparison rules, written once over either kind of operands (see
// operands.h), for the node classes and for the compiled program alike.
#include <cstdint>
#include <string>

#include "operands.h"

namespace cellformula::rules {

enum class Relation { Greater, Less, GreatEqual, LessEqual, Equal };

// Texts compare byte by byte as unsigned values. Kept out of line, so that
// the frame of a comparison of numbers, one per level of a deep tree, has no
// room for two texts.
template <Relation relation, typename Operands>
[[gnu::noinline]] double compareTexts(Operands& operands) {
    const std::string left = operands.text(0);
    const std::string right = operands.text(1);
    const int order = left.compare(right);
    switch (relation) {
        case Relation::Greater: return order > 0 ? 1.0 : 0.0;
        case Relation::Less: return order < 0 ? 1.0 : 0.0;
        case Relation::GreatEqual: return order >= 0 ? 1.0 : 0.0;
        case Relation::LessEqual: return order <= 0 ? 1.0 : 0.0;
        case Relation::Equal: return left == right ? 1.0 : 0.0;
    }
    return 0.0;
}

// Two numbers compare as numbers; as soon as either operand is not a number
// both compare as texts.
template <Relation relation, typename Operands>
double compare(Operands& operands) {
    const bool numbers = operands.type(0) == ExprNumber && operands.type(1) == ExprNumber;
    if (numbers) {
        const double left = operands.number(0);
        const double right = operands.number(1);
        switch (relation) {
            case Relation::Greater: return left > right ? 1.0 : 0.0;
            case Relation::Less: return left < right ? 1.0 : 0.0;
            case Relation::GreatEqual: return left >= right ? 1.0 : 0.0;
            case Relation::LessEqual: return left <= right ? 1.0 : 0.0;
            case Relation::Equal: return left == right ? 1.0 : 0.0;
        }
    }
    return compareTexts<relation>(operands);
}

// A text operand is fine for a comparison; only an operand without a type
// is wrong.
template <typename Operands>
std::uint32_t comparisonError(Operands& operands) {
    return operandsError<hasNoType>(operands);
}

}  // namespace cellformula::rules

#endif
