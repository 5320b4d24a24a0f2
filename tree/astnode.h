#ifndef CELLFORMULA_ASTNODE_H
#define CELLFORMULA_ASTNODE_H

#include <cstdint>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include <utility>

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
// What a host may rely on: every public operation of a tree the parser
// returns runs in time linear in the tree's size and uses at most about
// 64 KB of the calling thread's stack, whatever the tree's depth; deeper
// walks continue on stack segments the call maps for itself and frees before
// it returns. Parsing, printing and deleting never recurse. Nothing is
// written into the tree, so one tree may be evaluated from several threads.
//
// A host's own node class, derived from ASTNode or from any of the library's
// node classes, is asked through its public operations wherever it sits in a
// tree; the library's rules answer for it only when its own public operation
// asks them (by not overriding it, or by calling the base's).
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

    // The four questions again, within one public call: the library's nodes
    // state their rules here, and their public operations open a call and ask
    // them. The defaults ask the public operations, so a host's own nodes
    // answer for themselves.
    virtual double numberWithin(cellformula::Evaluation& evaluation) const;
    virtual void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const;
    virtual std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const;
    virtual std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const;

    // Moves the owned operands into `pending` and forgets them, so that a tree
    // can be deleted with a work list instead of one stack frame per level.
    virtual void detachOperands(std::vector<ASTNode*>& pending);

    // True when this node's text is the texts of `parts` one after another
    // (a sum, an IF's chosen branch), so long chains of them can be written
    // out in one pass instead of each level copying the one below.
    virtual bool isConcatenation(cellformula::Evaluation& evaluation, std::vector<const ASTNode*>& parts) const;

    // The node's number and error rules for a compiled program's stack, for
    // the classes whose answers depend on their operands' numbers alone.
    virtual const cellformula::StackRules* stackRules() const;
    // Number and error of this node's subtree in one walk, by the stack rules
    // of each node; a node without them answers "not walked".
    virtual cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const;

    // Lists the operands the library's rules ask, first to last; a host's
    // node lists none, as its operands are its own business.
    virtual void listOperands(std::vector<const ASTNode*>& operands) const;

    // Writes this node's own outline line and queues its operands, or returns
    // false for a node that prints itself through vPrintNode. `entry` is true
    // for the node whose vPrintNode started the outline.
    virtual bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                                  bool entry) const;

protected:
    // Deletes the given subtrees without recursion.
    static void deleteSubtrees(std::vector<ASTNode*> pending);
    // Prints the outline of this node's subtree without recursion.
    void printOutline(std::stringstream& stream, unsigned int depth) const;
    static void writeIndent(std::stringstream& stream, unsigned int depth);
};

namespace cellformula {

// True when the node's class is one of the library's own, whose rules the
// library may apply directly; a host's class is asked through its public
// operations.
bool isLibraryNode(const ASTNode& node);

// True when a base may apply its own rules to the node: the node's own public
// operation asked, or the node is the library's.
inline bool answersByRules(const ASTNode& node, const Evaluation& evaluation) {
    return evaluation.isEntry(&node) || isLibraryNode(node);
}

// True when the node is of the class itself, not a host's subclass of it.
// The library's classes have one type_info each, so their addresses compare.
template <class Node>
bool isExactly(const ASTNode& node) {
    return &typeid(node) == &typeid(Node);
}

// True when the rules of the library class Node answer for `node`: it is of
// that class itself, or its own public operation asked. A host's subclass
// inherits the rules but is otherwise asked through its public operations.
template <class Node>
bool rulesApply(const Node& node, const Evaluation& evaluation) {
    return __builtin_expect(isExactly<Node>(node), 1) || evaluation.isEntry(&node);
}

// An operand's answers within one call, each on enough stack; within a
// compiled program, the answers the program holds. The common case, a plain
// walk with stack to spare, is a virtual call; the rest is out of line.
double numberOfElsewhere(const ASTNode& node, Evaluation& evaluation);
double rememberedNumberOf(const ASTNode& node, Evaluation& evaluation);
void appendTextOfElsewhere(const ASTNode& node, Evaluation& evaluation, std::string& text);
std::string textOf(const ASTNode& node, Evaluation& evaluation);
std::uint32_t typeOfElsewhere(const ASTNode& node, Evaluation& evaluation);
std::uint32_t errorOfElsewhere(const ASTNode& node, Evaluation& evaluation);

inline double numberOf(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.asksPlainly()) {
        return node.numberWithin(evaluation);
    }
    return numberOfElsewhere(node, evaluation);
}

inline void appendTextOf(const ASTNode& node, Evaluation& evaluation, std::string& text) {
    if (evaluation.asksPlainly()) {
        node.appendTextWithin(evaluation, text);
        return;
    }
    appendTextOfElsewhere(node, evaluation, text);
}

// Types and errors are not kept: every walk asks them directly.
inline std::uint32_t typeOf(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.asksDirectly()) {
        return node.typeWithin(evaluation);
    }
    return typeOfElsewhere(node, evaluation);
}

inline std::uint32_t errorOf(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.asksDirectly()) {
        return node.errorWithin(evaluation);
    }
    return errorOfElsewhere(node, evaluation);
}

// Appends the texts of a concatenation's parts, in order.
inline void appendConcatenation(const ASTNode& node, Evaluation& evaluation, std::string& text) {
    std::vector<const ASTNode*> parts;
    node.isConcatenation(evaluation, parts);
    for (const ASTNode* part : parts) appendTextOf(*part, evaluation, text);
}

// The public operations of the library's nodes: each opens one call.
inline double numberOfEntry(const ASTNode& node) {
    Evaluation evaluation(&node, Evaluation::Memory::ConditionsOnly);
    return node.numberWithin(evaluation);
}
std::string textOfEntry(const ASTNode& node);
std::uint32_t typeOfEntry(const ASTNode& node);
std::uint32_t errorOfEntry(const ASTNode& node);

}  // namespace cellformula

// A number literal.
class CNConstant : public ASTNode {
public:
    explicit CNConstant(double value);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    double f64Value;
};

// A text literal.
class CNStringConstant : public ASTNode {
public:
    explicit CNStringConstant(const std::string& text);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    std::string oValue;
};

// PI().
class CNPi : public ASTNode {
public:
    CNPi() = default;
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;
};

// Base of the one-operand operators and functions. A subclass states its
// value in numberWithin; the base answers type ExprNumber, the formatted
// value as text, and the one-operand rule as error, unless the subclass
// states its own.
class CNSingleChildNode : public ASTNode {
public:
    explicit CNSingleChildNode(ASTNode* child, const std::string& name = std::string());
    ~CNSingleChildNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    void detachOperands(std::vector<ASTNode*>& pending) override;
    void listOperands(std::vector<const ASTNode*>& operands) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    ASTNode* poChild;
    std::string oName;
};

// Base of the nodes with two or more operands: either the pair poLeft/poRight
// (oChildren empty) or the list oChildren built from a cell range. As with one
// operand, a subclass states its value and the base answers the rest.
class CNManyChildrenNode : public ASTNode {
public:
    CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name = std::string());
    explicit CNManyChildrenNode(const std::vector<ASTNode*>& children,
                                const std::string& name = std::string());
    ~CNManyChildrenNode() override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    void detachOperands(std::vector<ASTNode*>& pending) override;
    void listOperands(std::vector<const ASTNode*>& operands) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    std::vector<ASTNode*> oChildren;
    ASTNode* poLeft;
    ASTNode* poRight;
    std::string oName;

protected:
    bool isPairForm() const { return oChildren.empty(); }
};

#endif
