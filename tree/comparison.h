#ifndef CELLFORMULA_COMPARISON_H
#define CELLFORMULA_COMPARISON_H

#include "astnode.h"

// Comparisons give 1 or 0: two numbers compare as numbers; as soon as either
// operand is not a number, both compare as texts.

// The comparison >.
class CNGreater : public CNManyChildrenNode {
public:
    CNGreater(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// The comparison <.
class CNLess : public CNManyChildrenNode {
public:
    CNLess(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// The comparison >=.
class CNGreatEqual : public CNManyChildrenNode {
public:
    CNGreatEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// The comparison <=.
class CNLessEqual : public CNManyChildrenNode {
public:
    CNLessEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// The comparison =, exact for numbers, byte for byte for texts.
class CNEqual : public CNManyChildrenNode {
public:
    CNEqual(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

#endif
