#ifndef CELLFORMULA_COMPARISON_H
#define CELLFORMULA_COMPARISON_H

#include "astnode.h"

// x > y: numbers as numbers, anything else as texts.
class CNGreater : public CNManyChildrenNode {
public:
    CNGreater(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// x < y.
class CNLess : public CNManyChildrenNode {
public:
    CNLess(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// x >= y.
class CNGreatEqual : public CNManyChildrenNode {
public:
    CNGreatEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// x <= y.
class CNLessEqual : public CNManyChildrenNode {
public:
    CNLessEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// x = y, exact for numbers, byte for byte for texts.
class CNEqual : public CNManyChildrenNode {
public:
    CNEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

#endif
