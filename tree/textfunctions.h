#ifndef CELLFORMULA_TEXTFUNCTIONS_H
#define CELLFORMULA_TEXTFUNCTIONS_H

#include "astnode.h"

// TEXT(value; format): the value written with the format's places.
class CNText : public CNManyChildrenNode {
public:
    CNText(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// LEFT(text; count): the first characters.
class CNLeft : public CNManyChildrenNode {
public:
    CNLeft(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// RIGHT(text; count): the last characters.
class CNRight : public CNManyChildrenNode {
public:
    CNRight(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

#endif
