#ifndef CELLFORMULA_PROGRAMRUN_H
#define CELLFORMULA_PROGRAMRUN_H

#include <cstdint>
#include <exception>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "compiledformula.h"
#include "evaluation.h"

namespace cellformula {

// One evaluation of a compiled program. The nodes' own rules run one step at
// a time against the answers already settled; a rule that asks for an answer
// not settled yet is run again once that answer is, so the work list replaces
// recursion and every answer is computed at most once.
class ProgramRun final : public DeferredAnswers {
public:
    explicit ProgramRun(const CompiledFormula& program);
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    double rootNumber();
    std::string rootText();
    std::uint32_t rootType();
    std::uint32_t rootError();

    double number(const ASTNode& operand) override;
    void appendText(const ASTNode& operand, std::string& text) override;
    std::uint32_t type(const ASTNode& operand) override;
    std::uint32_t error(const ASTNode& operand) override;

private:
    enum Question : std::uint8_t { Number, Text, Type, Error };
    struct Answers {
        double number = 0.0;
        std::string text;
        std::uint32_t type = ExprNumber;
        std::uint32_t error = ErrNone;
        std::uint8_t known = 0;
        std::uint8_t failed = 0;
    };
    struct Job {
        std::uint32_t step;
        Question question;
    };

    static std::uint8_t bit(Question question) { return static_cast<std::uint8_t>(1u << question); }
    // The settled answers of one operand of the step being run, or null after
    // noting the missing answer.
    const Answers* settledOperand(const ASTNode& operand, Question question);
    std::uint32_t stepOfOperand(const ASTNode& operand);
    const Answers& settle(std::uint32_t step, Question question);
    void run(const Job& job);
    // Writes a step's text; a concatenation is written out part by part.
    void writeText(std::uint32_t step, std::string& text);
    [[noreturn]] void rethrowFailure(std::uint32_t step, Question question) const;

    const CompiledFormula& program_;
    std::vector<Answers> answers_;
    // What a failed answer threw, by step and question; failures are rare.
    std::unordered_map<std::uint64_t, std::exception_ptr> failures_;
    std::vector<Job> jobs_;
    std::vector<Job> missing_;
    std::uint32_t current_ = 0;
    std::uint32_t cursor_ = 0;
    Evaluation evaluation_;
};

}  // namespace cellformula

#endif
