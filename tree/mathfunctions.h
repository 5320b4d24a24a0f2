#ifndef CELLFORMULA_MATHFUNCTIONS_H
#define CELLFORMULA_MATHFUNCTIONS_H

#include "astnode.h"

// SIN, radians.
class CNSin : public CNSingleChildNode {
public:
    explicit CNSin(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// COS.
class CNCos : public CNSingleChildNode {
public:
    explicit CNCos(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// TAN.
class CNTan : public CNSingleChildNode {
public:
    explicit CNTan(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// ASIN, defined on -1..1.
class CNAsin : public CNSingleChildNode {
public:
    explicit CNAsin(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// ACOS, defined on -1..1.
class CNAcos : public CNSingleChildNode {
public:
    explicit CNAcos(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// ATAN.
class CNAtan : public CNSingleChildNode {
public:
    explicit CNAtan(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// SQRT of a non-negative number.
class CNSqrt : public CNSingleChildNode {
public:
    explicit CNSqrt(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// LN, natural logarithm.
class CNLn : public CNSingleChildNode {
public:
    explicit CNLn(ASTNode* operand);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// ATAN2(x;y): the angle of the point (x, y).
class CNAtan2 : public CNManyChildrenNode {
public:
    CNAtan2(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

// LOG(x;base); base 10 goes through log10 so LOG(1000) is exactly 3.
class CNLog : public CNManyChildrenNode {
public:
    CNLog(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
};

#endif
