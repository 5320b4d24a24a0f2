#include "programrun.h"

#include <algorithm>
#include <cstddef>

#include "astnode.h"

namespace cellformula {

ProgramRun::ProgramRun(const CompiledFormula& program)
    : program_(program), answers_(program.steps_.size()), evaluation_(*this) {}

double ProgramRun::rootNumber() {
    const auto rootStep = static_cast<std::uint32_t>(answers_.size() - 1);
    const Answers& root = settle(rootStep, Number);
    if ((root.failed & bit(Number)) != 0) rethrowFailure(rootStep, Number);
    return root.number;
}

std::string ProgramRun::rootText() {
    // Every value first, operands before their nodes: an IF's condition is
    // then known wherever a text passes through it, and texts are written
    // out in one pass.
    for (std::uint32_t step = 0; step < answers_.size(); ++step) settle(step, Number);
    const auto rootStep = static_cast<std::uint32_t>(answers_.size() - 1);
    const Answers& root = settle(rootStep, Text);
    if ((root.failed & bit(Text)) != 0) rethrowFailure(rootStep, Text);
    return root.text;
}

void ProgramRun::rethrowFailure(std::uint32_t step, Question question) const {
    std::rethrow_exception(failures_.at(static_cast<std::uint64_t>(step) * 4 + question));
}

// The library's rules never let an exception out of a type or an error, but
// a host's node may, and then the program throws it as the tree would.
std::uint32_t ProgramRun::rootType() {
    const auto rootStep = static_cast<std::uint32_t>(answers_.size() - 1);
    const Answers& root = settle(rootStep, Type);
    if ((root.failed & bit(Type)) != 0) rethrowFailure(rootStep, Type);
    return root.type;
}

std::uint32_t ProgramRun::rootError() {
    const auto rootStep = static_cast<std::uint32_t>(answers_.size() - 1);
    const Answers& root = settle(rootStep, Error);
    if ((root.failed & bit(Error)) != 0) rethrowFailure(rootStep, Error);
    return root.error;
}

std::uint32_t ProgramRun::stepOfOperand(const ASTNode& operand) {
    const CompiledFormula::Step& step = program_.steps_[current_];
    // Rules ask their operands mostly in order, so the search starts where
    // the last one was found.
    for (std::uint32_t tried = 0; tried < step.operandCount; ++tried) {
        const std::uint32_t index = (cursor_ + tried) % step.operandCount;
        const std::uint32_t operandStep = program_.operands_[step.firstOperand + index];
        if (program_.steps_[operandStep].node == &operand) {
            cursor_ = index;
            return operandStep;
        }
    }
    return static_cast<std::uint32_t>(answers_.size());
}

const ProgramRun::Answers* ProgramRun::settledOperand(const ASTNode& operand, Question question) {
    const std::uint32_t step = stepOfOperand(operand);
    if (step == answers_.size()) throw std::logic_error("a rule asked for a node that is not its operand");
    const Answers& answers = answers_[step];
    if ((answers.known & bit(question)) == 0) {
        missing_.push_back({step, question});
        return nullptr;
    }
    if ((answers.failed & bit(question)) != 0) rethrowFailure(step, question);
    return &answers;
}

// A missing answer stands in as a neutral value; the rule's result is then
// thrown away and the rule runs again once the answer is settled.
double ProgramRun::number(const ASTNode& operand) {
    const Answers* answers = settledOperand(operand, Number);
    return answers != nullptr ? answers->number : 0.0;
}

void ProgramRun::appendText(const ASTNode& operand, std::string& text) {
    const Answers* answers = settledOperand(operand, Text);
    if (answers != nullptr) text += answers->text;
}

std::uint32_t ProgramRun::type(const ASTNode& operand) {
    const Answers* answers = settledOperand(operand, Type);
    return answers != nullptr ? answers->type : ExprNumber;
}

std::uint32_t ProgramRun::error(const ASTNode& operand) {
    const Answers* answers = settledOperand(operand, Error);
    return answers != nullptr ? answers->error : ErrNone;
}

const ProgramRun::Answers& ProgramRun::settle(std::uint32_t step, Question question) {
    jobs_.push_back({step, question});
    while (!jobs_.empty()) {
        const Job job = jobs_.back();
        if ((answers_[job.step].known & bit(job.question)) != 0) {
            jobs_.pop_back();
            continue;
        }
        run(job);
        if ((answers_[job.step].known & bit(job.question)) != 0) jobs_.pop_back();
    }
    return answers_[step];
}

void ProgramRun::run(const Job& job) {
    missing_.clear();
    current_ = job.step;
    cursor_ = 0;
    const ASTNode& node = *program_.steps_[job.step].node;
    Answers settled;
    std::exception_ptr failure;
    try {
        switch (job.question) {
            case Number: settled.number = node.numberWithin(evaluation_); break;
            case Text: writeText(job.step, settled.text); break;
            case Type: settled.type = node.typeWithin(evaluation_); break;
            case Error: settled.error = node.errorWithin(evaluation_); break;
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (!missing_.empty()) {
        // Whatever the stand-in values made the rule do, including a throw,
        // is discarded.
        jobs_.insert(jobs_.end(), missing_.begin(), missing_.end());
        return;
    }
    Answers& answers = answers_[job.step];
    answers.known |= bit(job.question);
    if (failure) {
        answers.failed |= bit(job.question);
        failures_[static_cast<std::uint64_t>(job.step) * 4 + job.question] = failure;
        return;
    }
    switch (job.question) {
        case Number: answers.number = settled.number; break;
        case Text: answers.text = std::move(settled.text); break;
        case Type: answers.type = settled.type; break;
        case Error: answers.error = settled.error; break;
    }
}

}  // namespace cellformula

namespace cellformula {

void ProgramRun::writeText(std::uint32_t step, std::string& text) {
    std::vector<std::uint32_t> pending{step};
    std::vector<const ASTNode*> parts;
    while (!pending.empty()) {
        const std::uint32_t next = pending.back();
        pending.pop_back();
        const Answers& answers = answers_[next];
        if ((answers.known & bit(Text)) != 0) {
            // A part that failed ends the text as it ends the tree's, unless
            // a part before it is still missing and might end it first.
            if ((answers.failed & bit(Text)) != 0 && missing_.empty()) rethrowFailure(next, Text);
            text += answers.text;
            continue;
        }
        const ASTNode& node = *program_.steps_[next].node;
        current_ = next;
        cursor_ = 0;
        parts.clear();
        const std::size_t missingBefore = missing_.size();
        if (!node.isConcatenation(evaluation_, parts)) {
            if (next == step) {
                node.appendTextWithin(evaluation_, text);
            } else {
                missing_.push_back({next, Text});
            }
            continue;
        }
        if (missing_.size() > missingBefore) continue;
        // Found first to last, as the search expects, so a long list stays linear.
        const std::size_t firstPart = pending.size();
        for (const ASTNode* part : parts) pending.push_back(stepOfOperand(*part));
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(firstPart), pending.end());
    }
}

}  // namespace cellformula
