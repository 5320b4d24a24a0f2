#include "compiledformula.h"

#include <cstddef>

#include "programrun.h"

namespace cellformula {

CompiledFormula::CompiledFormula(const ASTNode& root) {
    // An explicit post-order walk, so no depth is too deep to compile: each
    // node's step follows its operands' steps, which wait on `finished`.
    struct Visit {
        const ASTNode* node;
        bool operandsDone;
    };
    std::vector<Visit> pending{{&root, false}};
    std::vector<std::uint32_t> finished;
    std::vector<const ASTNode*> listed;
    while (!pending.empty()) {
        const Visit visit = pending.back();
        pending.pop_back();
        listed.clear();
        visit.node->listOperands(listed);
        if (!visit.operandsDone) {
            pending.push_back({visit.node, true});
            for (auto operand = listed.rbegin(); operand != listed.rend(); ++operand) pending.push_back({*operand, false});
            continue;
        }
        const auto first = static_cast<std::uint32_t>(operands_.size());
        operands_.insert(operands_.end(), finished.end() - static_cast<std::ptrdiff_t>(listed.size()), finished.end());
        finished.resize(finished.size() - listed.size());
        finished.push_back(static_cast<std::uint32_t>(steps_.size()));
        steps_.push_back({visit.node, first, static_cast<std::uint32_t>(listed.size())});
    }
    compileNumbers();
}

namespace {

// The general program, out of line so that the number program's callers stay small.
[[gnu::noinline]] double generalNumber(const CompiledFormula& program) {
    ProgramRun run(program);
    return run.rootNumber();
}

[[gnu::noinline]] FormulaResult generalResult(const CompiledFormula& program) {
    ProgramRun run(program);
    FormulaResult result;
    result.u32Type = run.rootType();
    result.u32Error = run.rootError();
    if (result.u32Type == ExprNumber) {
        result.f64Value = run.rootNumber();
    } else {
        result.oText = run.rootText();
    }
    return result;
}

}  // namespace

// The value when f64Evaluate (numberprogram.cpp) cannot run it in place.
double CompiledFormula::valueOutOfLine() const {
    if (numbersOnly_) return runNumbers(Errors::Skip).number;
    return generalNumber(*this);
}

std::string CompiledFormula::stringEvaluate() const {
    ProgramRun run(*this);
    return run.rootText();
}

std::uint32_t CompiledFormula::exprType() const {
    if (numbersOnly_) return ExprNumber;
    ProgramRun run(*this);
    return run.rootType();
}

std::uint32_t CompiledFormula::errType() const {
    if (numbersOnly_) return runNumbers(Errors::Check).error;
    ProgramRun run(*this);
    return run.rootError();
}

FormulaResult CompiledFormula::oEvaluateAll() const {
    if (numbersOnly_) {
        const NumberAnswer answer = runNumbers(Errors::Check);
        FormulaResult result;
        result.u32Type = ExprNumber;
        result.u32Error = answer.error;
        result.f64Value = answer.number;
        return result;
    }
    return generalResult(*this);
}

}  // namespace cellformula
