#include "astnode.h"

#include <cmath>

#include "buffer.h"
#include "logic.h"
#include "operation.h"
#include "treewalks.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

// Deletes a subtree with a work list, so that no depth of tree reaches the
// stack: a library node gives up its operands before it is deleted. A host's
// node deletes its own operands, as its class is written.
void deleteTree(ASTNode* root) {
    if (root == nullptr) return;
    const Operation rootOperation = operationOf(*root);
    if (rootOperation >= Operation::Host || rulesOf(rootOperation).shape == Shape::Leaf) {
        delete root;
        return;
    }
    Buffer<ASTNode*, 32> pending;
    pending.push_back(root);
    while (pending.size() != 0) {
        ASTNode* node = pending.back();
        pending.pop_back();
        const Operation operation = operationOf(*node);
        if (operation < Operation::Host) {
            switch (rulesOf(operation).shape) {
                case Shape::One: {
                    auto& one = static_cast<CNSingleChildNode&>(*node);
                    if (one.poChild != nullptr) pending.push_back(one.poChild);
                    one.poChild = nullptr;
                    break;
                }
                case Shape::Pair: {
                    auto& many = static_cast<CNManyChildrenNode&>(*node);
                    for (ASTNode* operand : {many.poLeft, many.poRight}) {
                        if (operand != nullptr) pending.push_back(operand);
                    }
                    for (ASTNode* operand : many.oChildren) {
                        if (operand != nullptr) pending.push_back(operand);
                    }
                    many.poLeft = many.poRight = nullptr;
                    many.oChildren.clear();
                    break;
                }
                case Shape::Condition: {
                    auto& condition = static_cast<CNIf&>(*node);
                    for (ASTNode* operand : {condition.poCondition, condition.poThen, condition.poElse}) {
                        if (operand != nullptr) pending.push_back(operand);
                    }
                    condition.poCondition = condition.poThen = condition.poElse = nullptr;
                    break;
                }
                case Shape::Leaf:
                    break;
            }
        }
        delete node;
    }
}

// ---------------------------------------------------------------- leaves' rules

extern const Rules kConstantRules{
    Shape::Leaf, Kind::Number, {}, nullptr, nullptr,
    [](Operands& operands) { return operands.self<CNConstant>().f64Value; }, nullptr};

extern const Rules kStringConstantRules{
    Shape::Leaf, Kind::Text, {}, [](Operands&) -> std::uint32_t { return ExprString; }, nullptr, nullptr,
    [](Operands& operands, std::string& text) { text = operands.self<CNStringConstant>().oValue; }};

extern const Rules kPiRules{Shape::Leaf, Kind::Number, {}, nullptr, nullptr,
                            [](Operands&) { return 3.141592653589793; }, nullptr};

// The bases' own rule is their error rule; their values are the subclasses'.
extern const Rules kOneOperandRules{
    Shape::One, Kind::Number, {kNothing, kTypesErrors, kNothing, kNothing}, nullptr, &oneOperandError,
    nullptr, nullptr};

extern const Rules kOperandsRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNothing, kNothing}, nullptr,
    [](Operands& operands) { return operandsError(operands, &isNotNumber); }, nullptr, nullptr};

}  // namespace cellformula

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

Operation ASTNode::operation() const {
    return Operation::Host;
}

// ---------------------------------------------------------------- leaves

CNConstant::CNConstant(double value) : f64Value(value) {}

double CNConstant::f64Evaluate() const {
    return f64Value;
}

void CNConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::Constant, stream, depth);
}

Operation CNConstant::operation() const {
    return Operation::Constant;
}

CNStringConstant::CNStringConstant(const std::string& text) : oValue(text) {}

double CNStringConstant::f64Evaluate() const {
    return 0.0;
}

void CNStringConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::StringConstant, stream, depth);
}

std::uint32_t CNStringConstant::exprType() {
    return ExprString;
}

std::string CNStringConstant::stringEvaluate() const {
    return oValue;
}

Operation CNStringConstant::operation() const {
    return Operation::StringConstant;
}

double CNPi::f64Evaluate() const {
    return 3.141592653589793;
}

void CNPi::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::Pi, stream, depth);
}

Operation CNPi::operation() const {
    return Operation::Pi;
}

// ---------------------------------------------------------------- the two bases

CNSingleChildNode::CNSingleChildNode(ASTNode* child, const std::string& name) : poChild(child), oName(name) {}

CNSingleChildNode::~CNSingleChildNode() {
    cellformula::deleteTree(poChild);
}

void CNSingleChildNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::OneOperand, stream, depth);
}

std::uint32_t CNSingleChildNode::errType() {
    return cellformula::errorAs(*this, Operation::OneOperand);
}

Operation CNSingleChildNode::operation() const {
    return Operation::OneOperand;
}

CNManyChildrenNode::CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name)
    : poLeft(left), poRight(right), oName(name) {}

CNManyChildrenNode::CNManyChildrenNode(const std::vector<ASTNode*>& children, const std::string& name)
    : oChildren(children), poLeft(nullptr), poRight(nullptr), oName(name) {}

CNManyChildrenNode::~CNManyChildrenNode() {
    cellformula::deleteTree(poLeft);
    cellformula::deleteTree(poRight);
    for (ASTNode* child : oChildren) cellformula::deleteTree(child);
}

void CNManyChildrenNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::Operands, stream, depth);
}

std::uint32_t CNManyChildrenNode::errType() {
    return cellformula::errorAs(*this, Operation::Operands);
}

Operation CNManyChildrenNode::operation() const {
    return Operation::Operands;
}
