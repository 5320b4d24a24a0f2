#include "astnode.h"

#include <utility>

using cellformula::EvaluationScope;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::typeOf;

// ---------------------------------------------------------------- ASTNode

ASTNode::~ASTNode() = default;

std::uint32_t ASTNode::exprType() {
    return ExprNumber;
}

std::uint32_t ASTNode::errType() {
    return ErrNone;
}

std::string ASTNode::stringEvaluate() const {
    return QuandelUtils::sstringify(f64Evaluate());
}

// A node defined outside the library only has its public operations.
double ASTNode::numberWithin(EvaluationScope&) const {
    return f64Evaluate();
}

std::string ASTNode::textWithin(EvaluationScope&) const {
    return stringEvaluate();
}

std::uint32_t ASTNode::typeWithin(EvaluationScope&) const {
    return const_cast<ASTNode&>(*this).exprType();
}

std::uint32_t ASTNode::errorWithin(EvaluationScope&) const {
    return const_cast<ASTNode&>(*this).errType();
}

void ASTNode::detachOperands(std::vector<ASTNode*>&) {}

void ASTNode::deleteSubtrees(std::vector<ASTNode*> pending) {
    // Room for a typical formula's whole tree up front, rather than growing
    // the list a step at a time.
    constexpr std::size_t kTypicalNodes = 64;
    pending.reserve(kTypicalNodes);
    while (!pending.empty()) {
        ASTNode* node = pending.back();
        pending.pop_back();
        if (node == nullptr) continue;
        node->detachOperands(pending);
        delete node;
    }
}

void ASTNode::writeIndent(std::stringstream& stream, unsigned int depth) {
    for (unsigned int i = 0; i < depth; ++i) stream << "  ";
}

// ---------------------------------------------------------------- leaves

CNConstant::CNConstant(double value) : f64Value(value) {}

double CNConstant::f64Evaluate() const {
    return f64Value;
}

void CNConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << f64Value << std::endl;
}

double CNConstant::numberWithin(EvaluationScope&) const {
    return f64Value;
}

std::string CNConstant::textWithin(EvaluationScope&) const {
    return QuandelUtils::sstringify(f64Value);
}

std::uint32_t CNConstant::typeWithin(EvaluationScope&) const {
    return ExprNumber;
}

std::uint32_t CNConstant::errorWithin(EvaluationScope&) const {
    return ErrNone;
}

CNStringConstant::CNStringConstant(const std::string& text) : oValue(text) {}

double CNStringConstant::f64Evaluate() const {
    return 0.0;
}

void CNStringConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << oValue << std::endl;
}

std::uint32_t CNStringConstant::exprType() {
    return ExprString;
}

std::string CNStringConstant::stringEvaluate() const {
    return oValue;
}

double CNStringConstant::numberWithin(EvaluationScope&) const {
    return 0.0;
}

std::string CNStringConstant::textWithin(EvaluationScope&) const {
    return oValue;
}

std::uint32_t CNStringConstant::typeWithin(EvaluationScope&) const {
    return ExprString;
}

std::uint32_t CNStringConstant::errorWithin(EvaluationScope&) const {
    return ErrNone;
}

namespace {
constexpr double kPi = 3.141592653589793;
}

double CNPi::f64Evaluate() const {
    return kPi;
}

void CNPi::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << kPi << std::endl;
}

double CNPi::numberWithin(EvaluationScope&) const {
    return kPi;
}

std::string CNPi::textWithin(EvaluationScope&) const {
    return QuandelUtils::sstringify(kPi);
}

std::uint32_t CNPi::typeWithin(EvaluationScope&) const {
    return ExprNumber;
}

std::uint32_t CNPi::errorWithin(EvaluationScope&) const {
    return ErrNone;
}

// ---------------------------------------------------------------- one operand

CNSingleChildNode::CNSingleChildNode(ASTNode* child, const std::string& name)
    : poChild(child), oName(name) {}

CNSingleChildNode::~CNSingleChildNode() {
    if (poChild != nullptr) deleteSubtrees({std::exchange(poChild, nullptr)});
}

void CNSingleChildNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << oName << std::endl;
    poChild->vPrintNode(stream, depth + 1);
}

std::uint32_t CNSingleChildNode::errType() {
    return cellformula::evaluateError(*this);
}

std::uint32_t CNSingleChildNode::operandError(EvaluationScope& scope) const {
    if (typeOf(*poChild, scope) != ExprNumber) return ErrWrongType;
    return errorOf(*poChild, scope);
}

std::string CNSingleChildNode::textWithin(EvaluationScope& scope) const {
    return QuandelUtils::sstringify(numberWithin(scope));
}

std::uint32_t CNSingleChildNode::typeWithin(EvaluationScope&) const {
    return ExprNumber;
}

std::uint32_t CNSingleChildNode::errorWithin(EvaluationScope& scope) const {
    return operandError(scope);
}

void CNSingleChildNode::detachOperands(std::vector<ASTNode*>& pending) {
    pending.push_back(std::exchange(poChild, nullptr));
}

// ---------------------------------------------------------------- two or more operands

CNManyChildrenNode::CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name)
    : poLeft(left), poRight(right), oName(name) {}

CNManyChildrenNode::CNManyChildrenNode(const std::vector<ASTNode*>& children, const std::string& name)
    : oChildren(children), poLeft(nullptr), poRight(nullptr), oName(name) {}

CNManyChildrenNode::~CNManyChildrenNode() {
    // Nodes freed through the work list arrive already emptied.
    if (poLeft == nullptr && poRight == nullptr && oChildren.empty()) return;
    std::vector<ASTNode*> pending;
    detachOperands(pending);
    deleteSubtrees(std::move(pending));
}

void CNManyChildrenNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << oName << std::endl;
    if (isPairForm()) {
        poLeft->vPrintNode(stream, depth + 1);
        poRight->vPrintNode(stream, depth + 1);
        return;
    }
    for (const ASTNode* child : oChildren) child->vPrintNode(stream, depth + 1);
}

std::uint32_t CNManyChildrenNode::errType() {
    return cellformula::evaluateError(*this);
}

std::uint32_t CNManyChildrenNode::operandsError(EvaluationScope& scope) const {
    if (isPairForm()) {
        if (poLeft == nullptr || poRight == nullptr) return ErrInvalidArg;
        if (typeOf(*poLeft, scope) != ExprNumber) return ErrWrongType;
        if (typeOf(*poRight, scope) != ExprNumber) return ErrWrongType;
        const std::uint32_t leftError = errorOf(*poLeft, scope);
        if (leftError != ErrNone) return leftError;
        return errorOf(*poRight, scope);
    }
    for (const ASTNode* child : oChildren) {
        const std::uint32_t error = errorOf(*child, scope);
        if (error != ErrNone) return error;
        if (typeOf(*child, scope) != ExprNumber) return ErrWrongType;
    }
    return ErrNone;
}

std::string CNManyChildrenNode::textWithin(EvaluationScope& scope) const {
    return QuandelUtils::sstringify(numberWithin(scope));
}

std::uint32_t CNManyChildrenNode::typeWithin(EvaluationScope&) const {
    return ExprNumber;
}

std::uint32_t CNManyChildrenNode::errorWithin(EvaluationScope& scope) const {
    return operandsError(scope);
}

void CNManyChildrenNode::detachOperands(std::vector<ASTNode*>& pending) {
    // The right operand comes off the work list first: in the usual long
    // formula, a sum nested to the left, it is a leaf, so the list stays
    // short instead of holding every right operand until the end.
    pending.insert(pending.end(), oChildren.begin(), oChildren.end());
    oChildren.clear();
    pending.push_back(std::exchange(poLeft, nullptr));
    pending.push_back(std::exchange(poRight, nullptr));
}
