#include "mathfunctions.h"

#include "mathrules.h"
#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;

using cellformula::rules::angle;
using cellformula::rules::applied;
using cellformula::rules::arcCosine;
using cellformula::rules::arcSine;
using cellformula::rules::arcTangent;
using cellformula::rules::cosine;
using cellformula::rules::domainError;
using cellformula::rules::logarithm;
using cellformula::rules::logarithmError;
using cellformula::rules::naturalLogarithm;
using cellformula::rules::notNegative;
using cellformula::rules::positive;
using cellformula::rules::sine;
using cellformula::rules::squareRoot;
using cellformula::rules::tangent;
using cellformula::rules::withinUnitRange;

namespace {

constexpr StackRules kSinRules{cellformula::operandRules<CNSin,
    &applied<sine, const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kCosRules{cellformula::operandRules<CNCos,
    &applied<cosine, const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kTanRules{cellformula::operandRules<CNTan,
    &applied<tangent, const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kAsinRules{cellformula::operandRules<CNAsin,
    &applied<arcSine, const StackOperands>,
    &domainError<withinUnitRange, const StackOperands>>()};
constexpr StackRules kAcosRules{cellformula::operandRules<CNAcos,
    &applied<arcCosine, const StackOperands>,
    &domainError<withinUnitRange, const StackOperands>>()};
constexpr StackRules kAtanRules{cellformula::operandRules<CNAtan,
    &applied<arcTangent, const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kSqrtRules{cellformula::operandRules<CNSqrt,
    &applied<squareRoot, const StackOperands>,
    &domainError<notNegative, const StackOperands>>()};
constexpr StackRules kLnRules{cellformula::operandRules<CNLn,
    &applied<naturalLogarithm, const StackOperands>,
    &domainError<positive, const StackOperands>>()};
constexpr StackRules kAtan2Rules{cellformula::operandRules<CNAtan2,
    &angle<const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kLogRules{cellformula::operandRules<CNLog,
    &logarithm<const StackOperands>,
    &logarithmError<const StackOperands>>()};

}  // namespace

CNSin::CNSin(ASTNode* operand) : CNSingleChildNode(operand, "sin sinus") {}

double CNSin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSin::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return applied<sine>(operands); });
}

const StackRules* CNSin::stackRules() const {
    return &kSinRules;
}

cellformula::WalkedAnswer CNSin::walkWithin(cellformula::Evaluation& evaluation) const {
    return kSinRules.walk(*this, evaluation);
}

CNCos::CNCos(ASTNode* operand) : CNSingleChildNode(operand, "cos cosinus") {}

double CNCos::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNCos::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return applied<cosine>(operands); });
}

const StackRules* CNCos::stackRules() const {
    return &kCosRules;
}

cellformula::WalkedAnswer CNCos::walkWithin(cellformula::Evaluation& evaluation) const {
    return kCosRules.walk(*this, evaluation);
}

CNTan::CNTan(ASTNode* operand) : CNSingleChildNode(operand, "tan tangent") {}

double CNTan::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNTan::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return applied<tangent>(operands); });
}

const StackRules* CNTan::stackRules() const {
    return &kTanRules;
}

cellformula::WalkedAnswer CNTan::walkWithin(cellformula::Evaluation& evaluation) const {
    return kTanRules.walk(*this, evaluation);
}

CNAsin::CNAsin(ASTNode* operand) : CNSingleChildNode(operand, "asin arcsinus") {}

double CNAsin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAsin::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return applied<arcSine>(operands); });
}

std::uint32_t CNAsin::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return domainError<withinUnitRange>(operands); });
}

const StackRules* CNAsin::stackRules() const {
    return &kAsinRules;
}

cellformula::WalkedAnswer CNAsin::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAsinRules.walk(*this, evaluation);
}

CNAcos::CNAcos(ASTNode* operand) : CNSingleChildNode(operand, "acos arccosinus") {}

double CNAcos::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAcos::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return applied<arcCosine>(operands); });
}

std::uint32_t CNAcos::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return domainError<withinUnitRange>(operands); });
}

const StackRules* CNAcos::stackRules() const {
    return &kAcosRules;
}

cellformula::WalkedAnswer CNAcos::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAcosRules.walk(*this, evaluation);
}

CNAtan::CNAtan(ASTNode* operand) : CNSingleChildNode(operand, "atan arctangent") {}

double CNAtan::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAtan::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return applied<arcTangent>(operands); });
}

const StackRules* CNAtan::stackRules() const {
    return &kAtanRules;
}

cellformula::WalkedAnswer CNAtan::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAtanRules.walk(*this, evaluation);
}

CNSqrt::CNSqrt(ASTNode* operand) : CNSingleChildNode(operand, "sqrt square root") {}

double CNSqrt::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNSqrt::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return applied<squareRoot>(operands); });
}

std::uint32_t CNSqrt::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return domainError<notNegative>(operands); });
}

const StackRules* CNSqrt::stackRules() const {
    return &kSqrtRules;
}

cellformula::WalkedAnswer CNSqrt::walkWithin(cellformula::Evaluation& evaluation) const {
    return kSqrtRules.walk(*this, evaluation);
}

CNLn::CNLn(ASTNode* operand) : CNSingleChildNode(operand, "ln natural logarithm") {}

double CNLn::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLn::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return applied<naturalLogarithm>(operands); });
}

std::uint32_t CNLn::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return domainError<positive>(operands); });
}

const StackRules* CNLn::stackRules() const {
    return &kLnRules;
}

cellformula::WalkedAnswer CNLn::walkWithin(cellformula::Evaluation& evaluation) const {
    return kLnRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNAtan2

CNAtan2::CNAtan2(ASTNode* left, ASTNode* right)
    : CNManyChildrenNode(left, right, "atan2 arctangent with 2 params") {}

double CNAtan2::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAtan2::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return angle(operands); });
}

const StackRules* CNAtan2::stackRules() const {
    return &kAtan2Rules;
}

cellformula::WalkedAnswer CNAtan2::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAtan2Rules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNLog

CNLog::CNLog(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "log base 10 logarithm") {}

double CNLog::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNLog::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return logarithm(operands); });
}

std::uint32_t CNLog::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return logarithmError(operands); });
}

const StackRules* CNLog::stackRules() const {
    return &kLogRules;
}

cellformula::WalkedAnswer CNLog::walkWithin(cellformula::Evaluation& evaluation) const {
    return kLogRules.walk(*this, evaluation);
}
