#include "comparison.h"

using cellformula::Evaluation;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

namespace {

enum class Relation { Greater, Less, GreatEqual, LessEqual, Equal };

// Two numbers compare as numbers; as soon as either operand is not a number
// both compare as texts, byte by byte as unsigned values.
double compareOperands(const CNManyChildrenNode& node, Relation relation, Evaluation& evaluation) {
    const bool numbers = typeOf(*node.poLeft, evaluation) == ExprNumber && typeOf(*node.poRight, evaluation) == ExprNumber;
    if (numbers) {
        const double left = numberOf(*node.poLeft, evaluation);
        const double right = numberOf(*node.poRight, evaluation);
        switch (relation) {
            case Relation::Greater: return left > right ? 1.0 : 0.0;
            case Relation::Less: return left < right ? 1.0 : 0.0;
            case Relation::GreatEqual: return left >= right ? 1.0 : 0.0;
            case Relation::LessEqual: return left <= right ? 1.0 : 0.0;
            case Relation::Equal: return left == right ? 1.0 : 0.0;
        }
    }
    const std::string left = textOf(*node.poLeft, evaluation);
    const std::string right = textOf(*node.poRight, evaluation);
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
std::uint32_t comparisonError(const CNManyChildrenNode& node, Evaluation& evaluation) {
    if (typeOf(*node.poLeft, evaluation) == ExprNoType) return ErrWrongType;
    if (typeOf(*node.poRight, evaluation) == ExprNoType) return ErrWrongType;
    const std::uint32_t leftError = errorOf(*node.poLeft, evaluation);
    if (leftError != ErrNone) return leftError;
    return errorOf(*node.poRight, evaluation);
}

}  // namespace

CNGreater::CNGreater(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "> greater") {}

double CNGreater::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreater::numberWithin(Evaluation& evaluation) const {
    return compareOperands(*this, Relation::Greater, evaluation);
}

std::uint32_t CNGreater::errorWithin(Evaluation& evaluation) const {
    return comparisonError(*this, evaluation);
}

CNLess::CNLess(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "< less") {}

double CNLess::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLess::numberWithin(Evaluation& evaluation) const {
    return compareOperands(*this, Relation::Less, evaluation);
}

std::uint32_t CNLess::errorWithin(Evaluation& evaluation) const {
    return comparisonError(*this, evaluation);
}

CNGreatEqual::CNGreatEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, ">= great equal") {}

double CNGreatEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreatEqual::numberWithin(Evaluation& evaluation) const {
    return compareOperands(*this, Relation::GreatEqual, evaluation);
}

std::uint32_t CNGreatEqual::errorWithin(Evaluation& evaluation) const {
    return comparisonError(*this, evaluation);
}

CNLessEqual::CNLessEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "<= less equal") {}

double CNLessEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLessEqual::numberWithin(Evaluation& evaluation) const {
    return compareOperands(*this, Relation::LessEqual, evaluation);
}

std::uint32_t CNLessEqual::errorWithin(Evaluation& evaluation) const {
    return comparisonError(*this, evaluation);
}

CNEqual::CNEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "= equal") {}

double CNEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNEqual::numberWithin(Evaluation& evaluation) const {
    return compareOperands(*this, Relation::Equal, evaluation);
}

std::uint32_t CNEqual::errorWithin(Evaluation& evaluation) const {
    return comparisonError(*this, evaluation);
}

