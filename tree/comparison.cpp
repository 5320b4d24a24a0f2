#include "comparison.h"

#include "comparisonrules.h"
#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;

using cellformula::rules::Relation;
using cellformula::rules::compare;
using cellformula::rules::comparisonError;

namespace {

template <class Node, Relation relation>
constexpr StackRules kRules{
    cellformula::operandRules<Node, &compare<relation, const StackOperands>, &comparisonError<const StackOperands>>()};

}  // namespace

CNGreater::CNGreater(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "> greater") {}

double CNGreater::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreater::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return compare<Relation::Greater>(operands); });
}

std::uint32_t CNGreater::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return comparisonError(operands); });
}

const StackRules* CNGreater::stackRules() const {
    return &kRules<CNGreater, Relation::Greater>;
}

cellformula::WalkedAnswer CNGreater::walkWithin(cellformula::Evaluation& evaluation) const {
    return kRules<CNGreater, Relation::Greater>.walk(*this, evaluation);
}

CNLess::CNLess(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "< less") {}

double CNLess::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLess::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return compare<Relation::Less>(operands); });
}

std::uint32_t CNLess::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return comparisonError(operands); });
}

const StackRules* CNLess::stackRules() const {
    return &kRules<CNLess, Relation::Less>;
}

cellformula::WalkedAnswer CNLess::walkWithin(cellformula::Evaluation& evaluation) const {
    return kRules<CNLess, Relation::Less>.walk(*this, evaluation);
}

CNGreatEqual::CNGreatEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, ">= great equal") {}

double CNGreatEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNGreatEqual::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return compare<Relation::GreatEqual>(operands); });
}

std::uint32_t CNGreatEqual::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return comparisonError(operands); });
}

const StackRules* CNGreatEqual::stackRules() const {
    return &kRules<CNGreatEqual, Relation::GreatEqual>;
}

cellformula::WalkedAnswer CNGreatEqual::walkWithin(cellformula::Evaluation& evaluation) const {
    return kRules<CNGreatEqual, Relation::GreatEqual>.walk(*this, evaluation);
}

CNLessEqual::CNLessEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "<= less equal") {}

double CNLessEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLessEqual::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return compare<Relation::LessEqual>(operands); });
}

std::uint32_t CNLessEqual::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return comparisonError(operands); });
}

const StackRules* CNLessEqual::stackRules() const {
    return &kRules<CNLessEqual, Relation::LessEqual>;
}

cellformula::WalkedAnswer CNLessEqual::walkWithin(cellformula::Evaluation& evaluation) const {
    return kRules<CNLessEqual, Relation::LessEqual>.walk(*this, evaluation);
}

CNEqual::CNEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "= equal") {}

double CNEqual::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNEqual::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return compare<Relation::Equal>(operands); });
}

std::uint32_t CNEqual::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return comparisonError(operands); });
}

const StackRules* CNEqual::stackRules() const {
    return &kRules<CNEqual, Relation::Equal>;
}

cellformula::WalkedAnswer CNEqual::walkWithin(cellformula::Evaluation& evaluation) const {
    return kRules<CNEqual, Relation::Equal>.walk(*this, evaluation);
}
