#ifndef CELLFORMULA_ASTNODE_H
#define CELLFORMULA_ASTNODE_H

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "evaluation.h"
#include "sstringify.h"

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

// A node of an expression tree. The six public operations keep their slot
// order; the operations after them are the library's own plumbing.
//
// Evaluation recurses once per tree level. With the default 8 MB stack a tree
// nested 40,000 levels deep evaluates safely in an optimised build (measured:
// the costliest shape, IF nested in a compared condition, overflows between
// 40,000 and 50,000 levels; a left-deep sum between 80,000 and 100,000 terms);
// sanitizer builds need more stack per level. Parsing and deleting never
// recurse, so trees of any depth can be built and freed.
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

    // The four operations again, inside the evaluation scope of one public
    // call. The defaults ask the public operations, so nodes defined outside
    // the library work unchanged.
    virtual double numberWithin(cellformula::EvaluationScope& scope) const;
    virtual std::string textWithin(cellformula::EvaluationScope& scope) const;
    virtual std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const;
    virtual std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const;

    // Moves the owned operands into `pending` and forgets them, so that a tree
    // can be deleted with a work list instead of one stack frame per level.
    virtual void detachOperands(std::vector<ASTNode*>& pending);

protected:
    // Deletes the given subtrees without recursion.
    static void deleteSubtrees(std::vector<ASTNode*> pending);
    static void writeIndent(std::stringstream& stream, unsigned int depth);
};

namespace cellformula {

inline double numberOf(const ASTNode& node, EvaluationScope& scope) {
    return node.numberWithin(scope);
}

inline std::string textOf(const ASTNode& node, EvaluationScope& scope) {
    return node.textWithin(scope);
}

inline std::uint32_t typeOf(const ASTNode& node, EvaluationScope& scope) {
    return node.typeWithin(scope);
}

inline std::uint32_t errorOf(const ASTNode& node, EvaluationScope& scope) {
    return node.errorWithin(scope);
}

template <typename Node>
double evaluateNumber(const Node& node) {
    EvaluationScope scope;
    return node.Node::numberWithin(scope);
}

template <typename Node>
std::string evaluateText(const Node& node) {
    EvaluationScope scope;
    return node.Node::textWithin(scope);
}

template <typename Node>
std::uint32_t evaluateType(const Node& node) {
    EvaluationScope scope;
    return node.Node::typeWithin(scope);
}

template <typename Node>
std::uint32_t evaluateError(const Node& node) {
    EvaluationScope scope;
    return node.Node::errorWithin(scope);
}

}  // namespace cellformula

// A number literal.
class CNConstant : public ASTNode {
public:
    explicit CNConstant(double value);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;

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
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;

    std::string oValue;
};

// PI().
class CNPi : public ASTNode {
public:
    CNPi() = default;
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::EvaluationScope& scope) const override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
};

// Base of the one-operand operators and functions. A subclass gives its value
// through numberWithin; the base answers type ExprNumber, the formatted value
// as text, and the one-operand rule as error.
class CNSingleChildNode : public ASTNode {
public:
    explicit CNSingleChildNode(ASTNode* child, const std::string& name = std::string());
    ~CNSingleChildNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t errType() override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
    void detachOperands(std::vector<ASTNode*>& pending) override;

    ASTNode* poChild;
    std::string oName;

protected:
    // Operand not a number: wrong type; otherwise the operand's own error.
    std::uint32_t operandError(cellformula::EvaluationScope& scope) const;
};

// Base of the nodes with two or more operands: either the pair poLeft/poRight
// (oChildren empty) or the list oChildren built from a cell range. As with one
// operand, a subclass gives its value and the base answers the rest.
class CNManyChildrenNode : public ASTNode {
public:
    CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name = std::string());
    explicit CNManyChildrenNode(const std::vector<ASTNode*>& children,
                                const std::string& name = std::string());
    ~CNManyChildrenNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    std::uint32_t errType() override;
    std::string textWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t typeWithin(cellformula::EvaluationScope& scope) const override;
    std::uint32_t errorWithin(cellformula::EvaluationScope& scope) const override;
    void detachOperands(std::vector<ASTNode*>& pending) override;

    std::vector<ASTNode*> oChildren;
    ASTNode* poLeft;
    ASTNode* poRight;
    std::string oName;

protected:
    bool isPairForm() const { return oChildren.empty(); }
    // Pair: absent operand, then both types, then left and right error.
    // List: per element its error, then its type.
    std::uint32_t operandsError(cellformula::EvaluationScope& scope) const;
};

#endif
