#include "comparison.h"

#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;
using cellformula::operandsOf;

namespace {

enum class Relation { Greater, Less, GreatEqual, LessEqual, Equal };

// Two numbers compare as numbers; as soon as either operand is not a number
// both compare as texts, byte by byte as unsigned values.
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

// A text operand is fine for a comparison; only an operand without a type
// is wrong.
template <typename Operands>
std::uint32_t comparisonError(Operands& operands) {
    return cellformula::operandsError<cellformula::hasNoType>(operands);
}

template <class Node, Relation relation>
constexpr StackRules kRules{
    cellformula::operandRules<Node, &compare<relation, const StackOperands>, &comparisonError<const StackOperands>>()};

}  // namespace

CNGreater::CNGreater(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "> greater") {}

double CNGreater::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreater::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return compare<Relation::Greater>(operands);
}

std::uint32_t CNGreater::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return comparisonError(operands);
}

const StackRules* CNGreater::stackRules() const {
    return &kRules<CNGreater, Relation::Greater>;
}

CNLess::CNLess(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "< less") {}

double CNLess::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLess::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return compare<Relation::Less>(operands);
}

std::uint32_t CNLess::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return comparisonError(operands);
}

const StackRules* CNLess::stackRules() const {
    return &kRules<CNLess, Relation::Less>;
}

CNGreatEqual::CNGreatEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, ">= great equal") {}

double CNGreatEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreatEqual::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return compare<Relation::GreatEqual>(operands);
}

std::uint32_t CNGreatEqual::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return comparisonError(operands);
}

const StackRules* CNGreatEqual::stackRules() const {
    return &kRules<CNGreatEqual, Relation::GreatEqual>;
}

CNLessEqual::CNLessEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "<= less equal") {}

double CNLessEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLessEqual::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return compare<Relation::LessEqual>(operands);
}

std::uint32_t CNLessEqual::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return comparisonError(operands);
}

const StackRules* CNLessEqual::stackRules() const {
    return &kRules<CNLessEqual, Relation::LessEqual>;
}

CNEqual::CNEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "= equal") {}

double CNEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNEqual::numberWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return compare<Relation::Equal>(operands);
}

std::uint32_t CNEqual::errorWithin(Evaluation& evaluation) const {
    auto operands = operandsOf(*this, evaluation);
    return comparisonError(operands);
}

const StackRules* CNEqual::stackRules() const {
    return &kRules<CNEqual, Relation::Equal>;
}
