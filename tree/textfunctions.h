#ifndef CELLFORMULA_TEXTFUNCTIONS_H
#define CELLFORMULA_TEXTFUNCTIONS_H

#include "astnode.h"

// TEXT(value; format) with a format of zeros and one point.
class CNText : public CNManyChildrenNode {
public:
    CNText(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// LEFT(text; count).
class CNLeft : public CNManyChildrenNode {
public:
    CNLeft(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// RIGHT(text; count); a negative count throws std::out_of_range.
class CNRight : public CNManyChildrenNode {
public:
    CNRight(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

#endif
