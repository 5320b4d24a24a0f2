#include "arithmetic.h"

#include "arithmeticrules.h"
#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;

using cellformula::rules::difference;
using cellformula::rules::divisorError;
using cellformula::rules::negated;
using cellformula::rules::power;
using cellformula::rules::powerError;
using cellformula::rules::product;
using cellformula::rules::quotient;
using cellformula::rules::remainder;
using cellformula::rules::sum;
using cellformula::rules::sumError;
using cellformula::rules::sumType;

#if !defined(__x86_64__)
namespace cellformula::rules {

double added(double left, double right) {
    return left + right;
}

double multiplied(double left, double right) {
    return left * right;
}

}  // namespace cellformula::rules
#endif

namespace {

constexpr StackRules kNegateRules{cellformula::operandRules<CNNegate,
    &negated<const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kAddRules{cellformula::operandRules<CNAdd,
    &sum<const StackOperands>,
    &sumError<const StackOperands>>()};
constexpr StackRules kSubtractRules{cellformula::operandRules<CNSubtract,
    &difference<const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kMultiplyRules{cellformula::operandRules<CNMultiply,
    &product<const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kDivideRules{cellformula::operandRules<CNDivide,
    &quotient<const StackOperands>,
    &divisorError<const StackOperands>>()};
constexpr StackRules kModuloRules{cellformula::operandRules<CNModulo,
    &remainder<const StackOperands>,
    &divisorError<const StackOperands>>()};
constexpr StackRules kPowerRules{cellformula::operandRules<CNPower,
    &power<const StackOperands>,
    &powerError<const StackOperands>>()};

}  // namespace

// ---------------------------------------------------------------- CNNegate

CNNegate::CNNegate(ASTNode* operand) : CNSingleChildNode(operand, "- negate") {}

double CNNegate::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNNegate::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return negated(operands); });
}

const StackRules* CNNegate::stackRules() const {
    return &kNegateRules;
}

cellformula::WalkedAnswer CNNegate::walkWithin(cellformula::Evaluation& evaluation) const {
    return kNegateRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNAdd

CNAdd::CNAdd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "+ add") {}

CNAdd::CNAdd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "+ add") {}

double CNAdd::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAdd::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return sum(operands); });
}

// A sum's text is its operands' texts one after another, each appended to
// the one text, so a long chain of sums stays linear.
bool CNAdd::isConcatenation(Evaluation&, std::vector<const ASTNode*>& parts) const {
    if (isPairForm()) {
        parts.push_back(poLeft);
        parts.push_back(poRight);
    } else {
        parts.insert(parts.end(), oChildren.begin(), oChildren.end());
    }
    return true;
}

void CNAdd::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    cellformula::appendConcatenation(*this, evaluation, text);
}

// Sums nest deeply (SUM(a;b;c) and a+b+c nest to the left) and every level
// asks its operands' type again, so one call works it out once.
std::uint32_t CNAdd::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return evaluation.rememberedType(this, [&] {
        return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return sumType(operands); });
    });
}

std::uint32_t CNAdd::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return sumError(operands); });
}

const StackRules* CNAdd::stackRules() const {
    return &kAddRules;
}

cellformula::WalkedAnswer CNAdd::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAddRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNSubtract, CNMultiply

CNSubtract::CNSubtract(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "- subtract") {}

double CNSubtract::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSubtract::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return difference(operands); });
}

const StackRules* CNSubtract::stackRules() const {
    return &kSubtractRules;
}

cellformula::WalkedAnswer CNSubtract::walkWithin(cellformula::Evaluation& evaluation) const {
    return kSubtractRules.walk(*this, evaluation);
}

CNMultiply::CNMultiply(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "* multiply") {}

double CNMultiply::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMultiply::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return product(operands); });
}

const StackRules* CNMultiply::stackRules() const {
    return &kMultiplyRules;
}

cellformula::WalkedAnswer CNMultiply::walkWithin(cellformula::Evaluation& evaluation) const {
    return kMultiplyRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNDivide, CNModulo

CNDivide::CNDivide(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "/ divide") {}

double CNDivide::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNDivide::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return quotient(operands); });
}

std::uint32_t CNDivide::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return divisorError(operands); });
}

const StackRules* CNDivide::stackRules() const {
    return &kDivideRules;
}

cellformula::WalkedAnswer CNDivide::walkWithin(cellformula::Evaluation& evaluation) const {
    return kDivideRules.walk(*this, evaluation);
}

CNModulo::CNModulo(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "% modulo") {}

double CNModulo::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNModulo::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return remainder(operands); });
}

std::uint32_t CNModulo::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return divisorError(operands); });
}

const StackRules* CNModulo::stackRules() const {
    return &kModuloRules;
}

cellformula::WalkedAnswer CNModulo::walkWithin(cellformula::Evaluation& evaluation) const {
    return kModuloRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNPower

CNPower::CNPower(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "^ power") {}

double CNPower::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNPower::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return power(operands); });
}

std::uint32_t CNPower::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return powerError(operands); });
}

const StackRules* CNPower::stackRules() const {
    return &kPowerRules;
}

cellformula::WalkedAnswer CNPower::walkWithin(cellformula::Evaluation& evaluation) const {
    return kPowerRules.walk(*this, evaluation);
}
