#ifndef CELLFORMULA_COMPILEDFORMULA_H
#define CELLFORMULA_COMPILEDFORMULA_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "astnode.h"
#include "formularesult.h"

namespace cellformula {

// A tree compiled once into a flat program, for hosts that evaluate the same
// formula many times. Every evaluation reads the host's current values and
// gives exactly what the tree's own operations give, the two standard
// exceptions included, without recursion and on any stack.
//
// The program refers to the tree's nodes: keep the tree alive as long as the
// program, and compile again after changing the tree. A program is read-only
// once built, so one program may be evaluated from several threads at once
// under the same conditions as a tree. A host's own nodes are asked through
// their public operations, each question at most once per evaluation.
class CompiledFormula {
public:
    explicit CompiledFormula(const ASTNode& root);

    double f64Evaluate() const;
    std::string stringEvaluate() const;
    std::uint32_t exprType() const;
    std::uint32_t errType() const;
    // Type, error and value of one evaluation, as oEvaluateAll of the tree.
    FormulaResult oEvaluateAll() const;

private:
    friend class ProgramRun;

    // Where each operand's answers are kept, as the program's own plumbing.
    struct Step {
        const ASTNode* node;
        std::uint32_t firstOperand;  // into operands_
        std::uint32_t operandCount;
    };

    // A step of the program on a stack of numbers, used when every node of
    // the tree is a number whose answers depend on its operands' numbers.
    struct StackStep {
        const ASTNode* node;
        const StackRules* rules;
        const double* source;        // a leaf's number, loaded directly; null for the others
        std::uint32_t sourceError;   // a leaf's error, which its record fixes once for all
        std::uint32_t operandCount;
        bool list;
    };

    struct StackAnswer {
        double number;
        std::uint32_t error;
    };
    void compileStack();
    StackAnswer runStack(bool withErrors) const;

    std::vector<Step> steps_;              // operands before the nodes that ask them; the root last
    std::vector<std::uint32_t> operands_;  // step numbers of each step's operands, first to last
    std::vector<StackStep> stackSteps_;    // empty when the tree needs the general program
    std::size_t stackDepth_ = 0;
    bool stackNeedsErrors_ = false;        // ISERROR reads its operand's error even for a value
};

}  // namespace cellformula

#endif
