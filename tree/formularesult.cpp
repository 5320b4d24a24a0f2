#include "formularesult.h"

#include "operands.h"

namespace cellformula {

namespace {

// Number and error of a tree whose nodes all have rules for a compiled
// stack, worked out in one walk over the tree itself, each node from its
// operands' answers; false as soon as a node does not qualify (a text, a
// host's node, an absent operand), leaving the ordinary walk to answer.
bool walkNumbers(const ASTNode& node, Evaluation& evaluation, double& number, std::uint32_t& error) {
    const StackRules* rules = node.stackRules();
    if (rules == nullptr || typeid(node) != *rules->owner) return false;
    const StackOperands none(nullptr, nullptr, 0, false);
    if (rules->source != nullptr) {
        number = *rules->source(node);
        error = rules->error(node, none);
        return true;
    }
    const ASTNode* few[3] = {nullptr, nullptr, nullptr};
    const ASTNode* const* list = nullptr;
    const std::size_t count = rules->operands(node, few, list);
    const ASTNode* const* operands = list != nullptr ? list : few;
    AnswerSlots<3> slots(count);
    double* numbers = slots.numbers();
    std::uint32_t* errors = slots.errors();
    for (std::size_t i = 0; i < count; ++i) {
        if (operands[i] == nullptr) return false;
        const bool walked = evaluation.withStack(
            [&] { return walkNumbers(*operands[i], evaluation, numbers[i], errors[i]); });
        if (!walked) return false;
    }
    const StackOperands answers(numbers, errors, count, list != nullptr);
    number = rules->number(node, answers);
    error = rules->error(node, answers);
    return true;
}

}  // namespace

FormulaResult oEvaluateAll(const ASTNode& root) {
    FormulaResult result;
    // A tree of numbers is read in one walk: the same rules, asked once each.
    {
        Evaluation walking(nullptr, Evaluation::Memory::ConditionsOnly);
        double number = 0.0;
        std::uint32_t error = ErrNone;
        if (walkNumbers(root, walking, number, error)) {
            result.u32Type = ExprNumber;
            result.u32Error = error;
            result.f64Value = number;
            return result;
        }
    }
    // No entry node: even the root is asked as an operand would be, so a
    // host's root answers through its own public operations. Classifying
    // keeps the values its rules compute; the value itself is computed once,
    // so its walk keeps only IF conditions, which is cheaper.
    Evaluation classifying(nullptr, Evaluation::Memory::Everything);
    result.u32Type = typeOf(root, classifying);
    result.u32Error = errorOf(root, classifying);
    Evaluation evaluating(nullptr, Evaluation::Memory::ConditionsOnly);
    if (result.u32Type == ExprNumber) {
        result.f64Value = numberOf(root, evaluating);
    } else {
        result.oText = textOf(root, evaluating);
    }
    return result;
}

}  // namespace cellformula
