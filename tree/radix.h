#ifndef CELLFORMULA_RADIX_H
#define CELLFORMULA_RADIX_H

#include "astnode.h"

// DEC2BIN: binary digits of a number in 0..255.
class CNDec2Bin : public CNSingleChildNode {
public:
    explicit CNDec2Bin(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// BIN2DEC: the value of up to eight binary digits.
class CNBin2Dec : public CNSingleChildNode {
public:
    explicit CNBin2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// DEC2HEX: hexadecimal digits of a non-negative number.
class CNDec2Hex : public CNSingleChildNode {
public:
    explicit CNDec2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// HEX2DEC: the value of hexadecimal digits.
class CNHex2Dec : public CNSingleChildNode {
public:
    explicit CNHex2Dec(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// BIN2HEX: binary digits rewritten in hexadecimal.
class CNBin2Hex : public CNSingleChildNode {
public:
    explicit CNBin2Hex(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

// HEX2BIN: hexadecimal digits rewritten in binary, at most 255.
class CNHex2Bin : public CNSingleChildNode {
public:
    explicit CNHex2Bin(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;
};

#endif
