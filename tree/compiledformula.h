#ifndef CELLFORMULA_COMPILEDFORMULA_H
#define CELLFORMULA_COMPILEDFORMULA_H

#include <cstdint>
#include <memory>
#include <string>

#include "astnode.h"
#include "formularesult.h"

namespace cellformula {

struct Instruction;

// A tree compiled once into a flat program, for hosts that evaluate the same
// formula many times. Every evaluation reads the host's current values and
// gives exactly what the tree's own operations give, the two standard
// exceptions included, on any stack. The program is one allocation of 16
// bytes per node and branch of the tree.
//
// The program refers to the tree's nodes: keep the tree alive as long as the
// program, and compile again after changing the tree. A program is read-only
// once built, so one program may be evaluated from several threads at once
// under the same conditions as a tree. A host's own nodes are asked through
// their public operations, each question at most once per evaluation.
//
// A program may be copied (the copy refers to the same tree) and moved. A
// moved-from program is empty: it answers like a formula without a value
// (ExprNoType, ErrInvalidArg, 0.0 and the empty text).
class CompiledFormula {
public:
    explicit CompiledFormula(const ASTNode& root);
    CompiledFormula(const CompiledFormula& other);
    CompiledFormula& operator=(const CompiledFormula& other);
    CompiledFormula(CompiledFormula&& other) noexcept;
    CompiledFormula& operator=(CompiledFormula&& other) noexcept;
    ~CompiledFormula();

    double f64Evaluate() const;
    std::string stringEvaluate() const;
    std::uint32_t exprType() const;
    std::uint32_t errType() const;
    // Type, error and value of one evaluation, as oEvaluateAll of the tree.
    FormulaResult oEvaluateAll() const;

private:
    std::unique_ptr<Instruction[]> code_;
    std::uint32_t size_ = 0;
    std::uint32_t depth_ = 0;
    std::uint16_t textsUnder_ = 0;  // the questions under which a text may be asked
};

}  // namespace cellformula

#endif
