#ifndef CELLFORMULA_LOGIC_H
#define CELLFORMULA_LOGIC_H

#include "astnode.h"

// AND: 1 when every operand is non-zero; stops at the first zero.
class CNAnd : public CNManyChildrenNode {
public:
    CNAnd(ASTNode* left, ASTNode* right);
    explicit CNAnd(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// OR: 1 when any operand is non-zero; stops at the first one.
class CNOr : public CNManyChildrenNode {
public:
    CNOr(ASTNode* left, ASTNode* right);
    explicit CNOr(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// MIN: the smallest value, passing over NaN.
class CNMin : public CNManyChildrenNode {
public:
    CNMin(ASTNode* left, ASTNode* right);
    explicit CNMin(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// MAX: the largest value, passing over NaN.
class CNMax : public CNManyChildrenNode {
public:
    CNMax(ASTNode* left, ASTNode* right);
    explicit CNMax(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// NOT: 1 for 0, else 0.
class CNNot : public CNSingleChildNode {
public:
    explicit CNNot(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// ISERROR: absorbs every error but ErrUnmaskable.
class CNIsError : public CNSingleChildNode {
public:
    explicit CNIsError(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// IF(condition; then; else); either branch may be absent.
class CNIf : public ASTNode {
public:
    CNIf(ASTNode* condition, ASTNode* thenBranch, ASTNode* elseBranch);
    ~CNIf() override;
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;

    ASTNode* poCondition;
    ASTNode* poThen;
    ASTNode* poElse;
};

#endif
