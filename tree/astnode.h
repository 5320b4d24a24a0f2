#ifndef CELLFORMULA_ASTNODE_H
#define CELLFORMULA_ASTNODE_H

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "sstringify.h"

namespace cellformula {
// Which of the library's classes a node is; the library's own business.
enum class Operation : std::uint8_t;
}  // namespace cellformula

// Kind of a node's value: read a number with f64Evaluate, a text with
// stringEvaluate.
enum ExprType : std::uint32_t {
    ExprNumber = 0,
    ExprString = 1,
    ExprNoType = 2,
};

// Error classification of an evaluation. Codes other than these come from
// the host's variable records and are handed on unchanged.
enum ErrType : std::uint32_t {
    ErrNone = 0,
    ErrInvalidArg = 2,
    ErrNoValue = 3,
    ErrInfinite = 4,
    ErrDomain = 5,
    ErrWrongType = 6,
    ErrUnmaskable = 7,
};

// A node of an expression tree: the six operations of the contract, then one
// by which the library recognises its own classes.
//
// What a host may rely on: every public operation of a tree made of the
// library's nodes runs in time linear in the tree's size plus the texts its
// rules produce, on a bounded part of the calling thread's stack (a few KB,
// whatever the depth: deep trees are evaluated with data on the heap, not by
// recursion). Nothing is written into the tree, so one tree may be evaluated
// from several threads. exprType and errType never throw for the library's
// nodes; f64Evaluate and stringEvaluate throw only std::invalid_argument
// (BIN2DEC of a non-binary text) and std::out_of_range (RIGHT with a negative
// count), where errType reports an error.
//
// A host's own node class, derived from ASTNode or from any library class, is
// asked through its public operations wherever it sits, each question at most
// once per public call of the tree above it, when a rule above needs the
// answer. The library's rules answer for it only when its own public operation
// asks them (by not overriding it, or by calling the base's). A chain of host
// nodes therefore recurses through their public operations on the caller's
// stack: a few hundred bytes a level (`struct MySqrt : CNSqrt {}` nested
// 20,000 deep needs several MB).
class ASTNode {
public:
    ASTNode() = default;
    ASTNode(const ASTNode&) = delete;
    ASTNode& operator=(const ASTNode&) = delete;

    virtual ~ASTNode();
    virtual double f64Evaluate() const = 0;
    virtual void vPrintNode(std::stringstream& stream, unsigned int depth) const = 0;
    virtual std::uint32_t exprType();
    virtual std::uint32_t errType();
    virtual std::string stringEvaluate() const;

    // Which library class this is; a host's class needs no override.
    virtual cellformula::Operation operation() const;
};

// A number literal.
class CNConstant : public ASTNode {
public:
    explicit CNConstant(double value);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    cellformula::Operation operation() const override;

    double f64Value;
};

// A text literal.
class CNStringConstant : public ASTNode {
public:
    explicit CNStringConstant(const std::string& text);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t exprType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;

    std::string oValue;
};

// PI().
class CNPi : public ASTNode {
public:
    CNPi() = default;
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    cellformula::Operation operation() const override;
};

// Base of the one-operand operators and functions.
class CNSingleChildNode : public ASTNode {
public:
    explicit CNSingleChildNode(ASTNode* child, const std::string& name = std::string());
    ~CNSingleChildNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;

    ASTNode* poChild;
    std::string oName;
};

// Base of the nodes with two or more operands: either the pair poLeft/poRight
// (oChildren empty) or the list oChildren built from a cell range.
class CNManyChildrenNode : public ASTNode {
public:
    CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name = std::string());
    explicit CNManyChildrenNode(const std::vector<ASTNode*>& children, const std::string& name = std::string());
    ~CNManyChildrenNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t errType() override;
    cellformula::Operation operation() const override;

    std::vector<ASTNode*> oChildren;
    ASTNode* poLeft;
    ASTNode* poRight;
    std::string oName;
};

#endif
