#ifndef CELLFORMULA_LOGIC_H
#define CELLFORMULA_LOGIC_H

#include "astnode.h"

// AND, stopping at the first false operand.
class CNAnd : public CNManyChildrenNode {
public:
    CNAnd(ASTNode* left, ASTNode* right);
    explicit CNAnd(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// OR, stopping at the first true operand.
class CNOr : public CNManyChildrenNode {
public:
    CNOr(ASTNode* left, ASTNode* right);
    explicit CNOr(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// MIN; a NaN is passed over when the other value is a number.
class CNMin : public CNManyChildrenNode {
public:
    CNMin(ASTNode* left, ASTNode* right);
    explicit CNMin(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// MAX; a NaN is passed over when the other value is a number.
class CNMax : public CNManyChildrenNode {
public:
    CNMax(ASTNode* left, ASTNode* right);
    explicit CNMax(const std::vector<ASTNode*>& children);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// NOT.
class CNNot : public CNSingleChildNode {
public:
    explicit CNNot(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// ISERROR: absorbs every error but ErrUnmaskable.
class CNIsError : public CNSingleChildNode {
public:
    explicit CNIsError(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// IF(condition; then; else); either branch may be absent.
class CNIf : public ASTNode {
public:
    CNIf(ASTNode* condition, ASTNode* thenBranch, ASTNode* elseBranch);
    ~CNIf() override;
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    void detachOperands(std::vector<ASTNode*>& pending) override;
    void listOperands(std::vector<const ASTNode*>& operands) const override;
    bool isConcatenation(cellformula::Evaluation& evaluation, std::vector<const ASTNode*>& parts) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;

    ASTNode* poCondition;
    ASTNode* poThen;
    ASTNode* poElse;

private:
    cellformula::TreeOperands operands(cellformula::Evaluation& evaluation) const;
    // The branch the condition picks, or null when that branch is absent.
    const ASTNode* chosenBranch(cellformula::Evaluation& evaluation, bool& conditionTrue) const;
};

#endif
