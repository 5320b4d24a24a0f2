#ifndef CELLFORMULA_PROGRAM_H
#define CELLFORMULA_PROGRAM_H

// The one evaluator. A tree is compiled into a program: its nodes in the
// order their answers are needed (operands first, IF's branches behind a
// branch and a jump), each with what every public question demands of it.
// A run walks the program once with a stack of answers on the heap, calling
// each node's rules (rules.h); the tree's own operations, the one-call result
// and a CompiledFormula all run this way. Never installed.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "buffer.h"
#include "formularesult.h"
#include "rules.h"

namespace cellformula {

struct Instruction {
    const ASTNode* node;
    // A list's operand count; where a branch or jump continues.
    std::uint32_t extent;
    Operation operation;
    std::uint8_t flags;
    // What each public question demands of this node: four bits for exprType,
    // errType, f64Evaluate and stringEvaluate, from the lowest.
    std::uint16_t demands;
};
static_assert(sizeof(Instruction) == 16, "a typical formula's program fits in 256 bytes");

enum InstructionFlags : std::uint8_t {
    kList = 1,          // a list-form node
    kMayNotBeNumber = 2,  // its value may be a text or have no type
};

// The public questions, in the order of the demand nibbles.
enum class Asked : std::uint8_t { Type = 0, Error = 1, Number = 2, Text = 3 };
constexpr std::uint16_t demandMask(Asked asked) {
    return static_cast<std::uint16_t>(0xF << (4 * static_cast<unsigned>(asked)));
}

using Code = Buffer<Instruction, 24>;

// What a run of a program needs to know beforehand.
struct ProgramNeeds {
    std::size_t depth;         // the deepest stack of answers
    std::uint16_t textsUnder;  // the demand nibbles under which some text may be asked
};

// Compiles the tree under `root`, whose own rules are those of `operation`
// (its class, or the base whose public operation was called). `asked` says
// which questions' demands to work out.
ProgramNeeds compile(const ASTNode& root, Operation operation, std::uint16_t asked, Code& code);

// The root's answers after one run for the questions of `mask`; the host's
// node at the root is asked only when its answer is read.
class Answer {
public:
    // `texts` says whether any node's text may be asked under `mask`.
    Answer(const Instruction* code, std::size_t size, std::size_t depth, std::uint16_t mask, bool texts);
    std::uint32_t type();
    std::uint32_t error();
    double number();  // may throw what the value raises
    std::string text();
    FormulaResult all();

private:
    void run(const Instruction* code, std::size_t size, std::uint16_t mask);
    void pushAbsent(std::size_t at);
    static std::uint32_t textOf(const Rules& rules, Operands& operands, const Slot& answer, std::string& text);
    std::string* textsAt(std::size_t at) { return texts_.empty() ? nullptr : &texts_[at]; }
    template <typename Read>
    auto rethrowing(Read read);

    Buffer<Slot, 16> slots_;
    std::vector<std::string> texts_;
    Raises raises_;
    std::size_t top_ = 0;
};

// The four questions and the one-call result of a node, by its own rules.
double numberAs(const ASTNode& node, Operation operation);
std::string textAs(const ASTNode& node, Operation operation);
std::uint32_t typeAs(const ASTNode& node, Operation operation);
std::uint32_t errorAs(const ASTNode& node, Operation operation);

// The operation whose rules answer for `node` when a library node asks it:
// its class's, or Host for a class the library does not know.
Operation operationOf(const ASTNode& node);

// The questions of the one-call result: the text too when the root may be one.
std::uint16_t resultMask(const Instruction& root);

}  // namespace cellformula

#endif
