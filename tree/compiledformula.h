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

    // The number program, used when every node of the tree is a number whose
    // answers depend on its operands' numbers: the leaves that are not read
    // where they live are copied into slots first, then each instruction
    // reads its operands (from slots, in place, or the previous result) and
    // writes its own slot, running the common rules inline (numberprogram.cpp).
    struct Instruction {
        std::uint8_t operation;     // which rules to run (numberoperations.h)
        bool list;
        std::uint32_t count;
        // Each operand's slot; for a range, where its slots start in listSlots_,
        // or, for a range of leaves read in place, where they start in listLeaves_.
        std::uint32_t operands[3];
        std::uint32_t result;
        // The errors of leaves read in place and, for a step whose error a run
        // confirms, the operands' errors as compiling assumed them.
        std::uint32_t assumedErrors[3];
        const double* leaves[3];         // where the leaves read in place live (a third: merged steps)
    };
    // The rules an instruction without an inline case calls.
    struct Call {
        const ASTNode* node;
        const StackRules* rules;
    };
    struct NumberAnswer {
        double number;
        std::uint32_t error;
    };
    // How a run works out the errors: not at all, by checking only the
    // steps where one may arise against what compiling worked out, or all.
    enum class Errors : std::uint8_t { Skip, Check, Compute };
    void compileNumbers();
    void assumeErrors(const std::vector<const double*>& sourceOf, const std::vector<std::uint32_t>& leafErrorOf);
    void mergeSteps();
    // Most formulas fit their slots on the stack; a long one gets its own.
    static constexpr std::size_t kInlineSlots = 64;
    double valueOutOfLine() const;
    NumberAnswer runNumbers(Errors errors) const;
    template <Errors errorWork>
    NumberAnswer runNumbersInPlace() const;
    template <Errors errorWork>
    NumberAnswer runNumbersOnHeap() const;
    template <Errors errorWork>
    NumberAnswer runNumbers(double* numbers, std::uint32_t* errors) const;

    std::vector<Step> steps_;              // operands before the nodes that ask them; the root last
    std::vector<std::uint32_t> operands_;  // step numbers of each step's operands, first to last
    bool numbersOnly_ = false;             // false when the tree needs the general program
    std::vector<const double*> leafSources_;
    std::uint32_t leafCount_ = 0;          // the sizes of leafSources_ and instructions_
    std::uint32_t instructionCount_ = 0;
    std::vector<std::uint32_t> leafErrors_;  // a leaf's error, which its record fixes once for all
    std::vector<Instruction> instructions_;
    std::vector<std::uint32_t> listSlots_;
    std::vector<const double*> listLeaves_;      // where the leaves of a range read in place live
    std::vector<std::uint32_t> listLeafErrors_;  // and their errors
    std::vector<Call> calls_;              // one per instruction, read only by those without an inline case
    std::size_t slotCount_ = 0;
    std::uint32_t gatherSlot_ = 0;         // where a call's operands are copied side by side
    std::uint32_t rootSlot_ = 0;
    bool valueNeedsErrors_ = false;        // ISERROR, or a called rule, may read an operand's error
    bool valueInPlace_ = false;            // a number program whose value needs no error, in kInlineSlots
    bool errorsAssumed_ = true;            // false when a step's error can be neither assumed nor confirmed
    std::uint32_t assumedRootError_ = ErrNone;  // the root's error when every check holds
};

}  // namespace cellformula

#endif
