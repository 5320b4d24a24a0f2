#ifndef CELLFORMULA_ARITHMETIC_H
#define CELLFORMULA_ARITHMETIC_H

#include "astnode.h"

// Unary minus.
class CNNegate : public CNSingleChildNode {
public:
    explicit CNNegate(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// Addition and SUM; with a text operand it concatenates texts.
class CNAdd : public CNManyChildrenNode {
public:
    CNAdd(ASTNode* left, ASTNode* right);
    explicit CNAdd(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// Subtraction.
class CNSubtract : public CNManyChildrenNode {
public:
    CNSubtract(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// Multiplication.
class CNMultiply : public CNManyChildrenNode {
public:
    CNMultiply(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// Division; a zero divisor is a domain error.
class CNDivide : public CNManyChildrenNode {
public:
    CNDivide(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// Remainder with the sign of the dividend (fmod).
class CNModulo : public CNManyChildrenNode {
public:
    CNModulo(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// Power (pow); 0 to a negative power and roots of negatives are errors.
class CNPower : public CNManyChildrenNode {
public:
    CNPower(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

#endif
