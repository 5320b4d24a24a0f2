#include "formularesult.h"

namespace cellformula {

FormulaResult oEvaluateAll(const ASTNode& root) {
    // No entry node: even the root is asked as an operand would be, so a
    // host's root answers through its own public operations. Classifying
    // keeps the values its rules compute; the value itself is computed once,
    // so its walk keeps only IF conditions, which is cheaper.
    Evaluation classifying(nullptr, Evaluation::Memory::Everything);
    FormulaResult result;
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
