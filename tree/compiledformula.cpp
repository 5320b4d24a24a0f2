#include "compiledformula.h"

#include <algorithm>
#include <cstddef>
#include <typeinfo>

#include "logic.h"
#include "operands.h"
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
    compileStack();
}

namespace {

// The operands a node's rules number, all present: a pair both, an IF all three.
bool hasEveryOperand(const ASTNode& node, std::size_t listed) {
    if (const auto* pair = dynamic_cast<const CNManyChildrenNode*>(&node)) {
        return !pair->oChildren.empty() || listed == 2;
    }
    if (dynamic_cast<const CNSingleChildNode*>(&node) != nullptr) return listed == 1;
    if (dynamic_cast<const CNIf*>(&node) != nullptr) return listed == 3;
    return true;
}

bool isList(const ASTNode& node) {
    const auto* many = dynamic_cast<const CNManyChildrenNode*>(&node);
    return many != nullptr && !many->oChildren.empty();
}

}  // namespace

void CompiledFormula::compileStack() {
    std::vector<bool> onStack(steps_.size(), false);
    std::vector<StackStep> program;
    std::size_t depth = 0;
    bool needsErrors = false;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        const StackRules* rules = step.node->stackRules();
        if (rules == nullptr || typeid(*step.node) != *rules->owner) return;
        if (!hasEveryOperand(*step.node, step.operandCount)) return;
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
            if (!onStack[operands_[step.firstOperand + i]]) return;
        }
        onStack[index] = true;
        needsErrors = needsErrors || typeid(*step.node) == typeid(CNIsError);
        const double* source = rules->source != nullptr ? rules->source(*step.node) : nullptr;
        // A leaf's error depends on what its record holds, which never changes.
        const StackOperands none(nullptr, nullptr, 0, false);
        const std::uint32_t sourceError = source != nullptr ? rules->error(*step.node, none) : ErrNone;
        program.push_back({step.node, rules, source, sourceError, step.operandCount, isList(*step.node)});
        depth = depth - step.operandCount + 1;
        stackDepth_ = std::max(stackDepth_, depth);
    }
    stackSteps_ = std::move(program);
    stackNeedsErrors_ = needsErrors;
}

CompiledFormula::StackAnswer CompiledFormula::runStack(bool withErrors) const {
    // Most formulas fit the inline stack; a deep one gets its own.
    AnswerSlots<64> stack(stackDepth_);
    double* numbers = stack.numbers();
    std::uint32_t* errors = stack.errors();
    std::size_t top = 0;
    for (const StackStep& step : stackSteps_) {
        if (step.source != nullptr) {
            numbers[top] = *step.source;
            errors[top] = step.sourceError;
            ++top;
            continue;
        }
        top -= step.operandCount;
        const StackOperands operands(numbers + top, errors + top, step.operandCount, step.list);
        const double number = step.rules->number(*step.node, operands);
        if (withErrors) errors[top] = step.rules->error(*step.node, operands);
        numbers[top] = number;
        ++top;
    }
    return StackAnswer{numbers[0], withErrors ? errors[0] : ErrNone};
}

double CompiledFormula::f64Evaluate() const {
    if (!stackSteps_.empty()) return runStack(stackNeedsErrors_).number;
    ProgramRun run(*this);
    return run.rootNumber();
}

std::string CompiledFormula::stringEvaluate() const {
    ProgramRun run(*this);
    return run.rootText();
}

std::uint32_t CompiledFormula::exprType() const {
    if (!stackSteps_.empty()) return ExprNumber;
    ProgramRun run(*this);
    return run.rootType();
}

std::uint32_t CompiledFormula::errType() const {
    if (!stackSteps_.empty()) return runStack(true).error;
    ProgramRun run(*this);
    return run.rootError();
}

FormulaResult CompiledFormula::oEvaluateAll() const {
    if (!stackSteps_.empty()) {
        const StackAnswer answer = runStack(true);
        FormulaResult result;
        result.u32Type = ExprNumber;
        result.u32Error = answer.error;
        result.f64Value = answer.number;
        return result;
    }
    ProgramRun run(*this);
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

}  // namespace cellformula
