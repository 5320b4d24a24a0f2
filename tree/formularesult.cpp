#include "formularesult.h"

#include "operands.h"

namespace cellformula {

FormulaResult oEvaluateAll(const ASTNode& root) {
    FormulaResult result;
    // A tree of numbers is read in one walk: the same rules, asked once each.
    {
        Evaluation walking(nullptr, Evaluation::Memory::ConditionsOnly);
        const WalkedAnswer answer = root.walkWithin(walking);
        if (answer.walked()) {
            result.u32Type = ExprNumber;
            result.u32Error = answer.code();
            result.f64Value = answer.number;
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
