#ifndef CELLFORMULA_RADIX_H
#define CELLFORMULA_RADIX_H

#include "astnode.h"

// DEC2BIN: binary digits of a number in 0..255.
class CNDec2Bin : public CNSingleChildNode {
public:
    explicit CNDec2Bin(ASTNode* operand);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// BIN2DEC: the value of up to eight binary digits.
class CNBin2Dec : public CNSingleChildNode {
public:
    explicit CNBin2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// DEC2HEX: hexadecimal digits of a non-negative number.
class CNDec2Hex : public CNSingleChildNode {
public:
    explicit CNDec2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// HEX2DEC: the value of hexadecimal digits.
class CNHex2Dec : public CNSingleChildNode {
public:
    explicit CNHex2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// BIN2HEX: hexadecimal digits of binary digits.
class CNBin2Hex : public CNSingleChildNode {
public:
    explicit CNBin2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

// HEX2BIN: binary digits of hexadecimal digits up to FF.
class CNHex2Bin : public CNSingleChildNode {
public:
    explicit CNHex2Bin(ASTNode* operand);
    double f64Evaluate() const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
};

#endif
