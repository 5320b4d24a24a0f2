#ifndef CELLFORMULA_MATHFUNCTIONS_H
#define CELLFORMULA_MATHFUNCTIONS_H

#include "astnode.h"

// SIN: the sine of an angle in radians.
class CNSin : public CNSingleChildNode {
public:
    explicit CNSin(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// COS: the cosine of an angle in radians.
class CNCos : public CNSingleChildNode {
public:
    explicit CNCos(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// TAN: the tangent of an angle in radians.
class CNTan : public CNSingleChildNode {
public:
    explicit CNTan(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// ASIN: defined on -1..1.
class CNAsin : public CNSingleChildNode {
public:
    explicit CNAsin(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// ACOS: defined on -1..1.
class CNAcos : public CNSingleChildNode {
public:
    explicit CNAcos(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// ATAN: the arctangent in radians.
class CNAtan : public CNSingleChildNode {
public:
    explicit CNAtan(ASTNode* operand);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// SQRT: a negative operand is a domain error.
class CNSqrt : public CNSingleChildNode {
public:
    explicit CNSqrt(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// LN: 0 is infinite, negatives a domain error.
class CNLn : public CNSingleChildNode {
public:
    explicit CNLn(ASTNode* operand);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

// ATAN2(x; y): the angle of the point (x, y), the second argument the ordinate.
class CNAtan2 : public CNManyChildrenNode {
public:
    CNAtan2(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    cellformula::Operation operation() const override;
};

// LOG(x; base); LOG(x) is built with the base 10.
class CNLog : public CNManyChildrenNode {
public:
    CNLog(ASTNode* left, ASTNode* right);
    double f64Evaluate() const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;
};

#endif
