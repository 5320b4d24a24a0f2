#ifndef CELLFORMULA_TEXTFUNCTIONS_H
#define CELLFORMULA_TEXTFUNCTIONS_H

#include "astnode.h"

// TEXT(value; format) with a format of zeros and one point.
class CNText : public CNManyChildrenNode {
public:
    CNText(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// LEFT(text; count).
class CNLeft : public CNManyChildrenNode {
public:
    CNLeft(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// RIGHT(text; count); a negative count throws std::out_of_range.
class CNRight : public CNManyChildrenNode {
public:
    CNRight(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

#endif
