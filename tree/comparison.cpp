#include "comparison.h"

using cellformula::EvaluationScope;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

namespace {

enum class Relation { Greater, Less, GreatEqual, LessEqual, Equal };

// Two numbers compare as numbers; as soon as either operand is not a number
// both compare as texts, byte by byte as unsigned values.
double compareOperands(const CNManyChildrenNode& node, Relation relation, EvaluationScope& scope) {
    const bool numbers = typeOf(*node.poLeft, scope) == ExprNumber && typeOf(*node.poRight, scope) == ExprNumber;
    if (numbers) {
        const double left = numberOf(*node.poLeft, scope);
        const double right = numberOf(*node.poRight, scope);
        switch (relation) {
            case Relation::Greater: return left > right ? 1.0 : 0.0;
            case Relation::Less: return left < right ? 1.0 : 0.0;
            case Relation::GreatEqual: return left >= right ? 1.0 : 0.0;
            case Relation::LessEqual: return left <= right ? 1.0 : 0.0;
            case Relation::Equal: return left == right ? 1.0 : 0.0;
        }
    }
    const std::string left = textOf(*node.poLeft, scope);
    const std::string right = textOf(*node.poRight, scope);
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

// A text operand is fine for a comparison; only an operand without a type
// is wrong.
std::uint32_t comparisonError(const CNManyChildrenNode& node, EvaluationScope& scope) {
    if (typeOf(*node.poLeft, scope) == ExprNoType) return ErrWrongType;
    if (typeOf(*node.poRight, scope) == ExprNoType) return ErrWrongType;
    const std::uint32_t leftError = errorOf(*node.poLeft, scope);
    if (leftError != ErrNone) return leftError;
    return errorOf(*node.poRight, scope);
}

}  // namespace

#define CELLFORMULA_COMPARISON(Class, Label, Kind)                                      \
    Class::Class(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, Label) {} \
    double Class::f64Evaluate() const { return cellformula::evaluateNumber(*this); }     \
    std::uint32_t Class::errType() { return cellformula::evaluateError(*this); }         \
    double Class::numberWithin(EvaluationScope& scope) const {                           \
        return compareOperands(*this, Relation::Kind, scope);                            \
    }                                                                                    \
    std::uint32_t Class::errorWithin(EvaluationScope& scope) const {                     \
        return comparisonError(*this, scope);                                            \
    }

CELLFORMULA_COMPARISON(CNGreater, "> greater", Greater)
CELLFORMULA_COMPARISON(CNLess, "< less", Less)
CELLFORMULA_COMPARISON(CNGreatEqual, ">= great equal", GreatEqual)
CELLFORMULA_COMPARISON(CNLessEqual, "<= less equal", LessEqual)
CELLFORMULA_COMPARISON(CNEqual, "= equal", Equal)

#undef CELLFORMULA_COMPARISON
