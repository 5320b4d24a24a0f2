#ifndef CELLFORMULA_RADIX_H
#define CELLFORMULA_RADIX_H

#include "astnode.h"

// DEC2BIN: 0..255 as binary digits.
class CNDec2Bin : public CNSingleChildNode {
public:
    explicit CNDec2Bin(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// BIN2DEC: up to eight binary digits; other digits throw std::invalid_argument.
class CNBin2Dec : public CNSingleChildNode {
public:
    explicit CNBin2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// DEC2HEX: upper-case hexadecimal digits.
class CNDec2Hex : public CNSingleChildNode {
public:
    explicit CNDec2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// HEX2DEC.
class CNHex2Dec : public CNSingleChildNode {
public:
    explicit CNHex2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// BIN2HEX.
class CNBin2Hex : public CNSingleChildNode {
public:
    explicit CNBin2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// HEX2BIN: values up to 255.
class CNHex2Bin : public CNSingleChildNode {
public:
    explicit CNHex2Bin(ASTNode* operand);
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
