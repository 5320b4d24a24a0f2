#ifndef CELLFORMULA_ARITHMETIC_H
#define CELLFORMULA_ARITHMETIC_H

#include "astnode.h"

// Unary minus.
class CNNegate : public CNSingleChildNode {
public:
    explicit CNNegate(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Addition and SUM; with a text operand it concatenates texts.
class CNAdd : public CNManyChildrenNode {
public:
    CNAdd(ASTNode* left, ASTNode* right);
    explicit CNAdd(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    bool isConcatenation(cellformula::Evaluation& evaluation, std::vector<const ASTNode*>& parts) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Subtraction.
class CNSubtract : public CNManyChildrenNode {
public:
    CNSubtract(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Multiplication.
class CNMultiply : public CNManyChildrenNode {
public:
    CNMultiply(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Division; a zero divisor is a domain error.
class CNDivide : public CNManyChildrenNode {
public:
    CNDivide(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Remainder with the sign of the dividend (fmod).
class CNModulo : public CNManyChildrenNode {
public:
    CNModulo(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// Power (pow); 0 to a negative power and roots of negatives are errors.
class CNPower : public CNManyChildrenNode {
public:
    CNPower(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

#endif
