#include "formularesult.h"

namespace cellformula {

FormulaResult oEvaluateAll(const ASTNode& root) {
    // No entry node: even the root is asked as an operand would be, so a
    // host's root answers through its own public operations.
    Evaluation evaluation(nullptr, Evaluation::Memory::Everything);
    FormulaResult result;
    result.u32Type = typeOf(root, evaluation);
    result.u32Error = errorOf(root, evaluation);
    if (result.u32Type == ExprNumber) {
        result.f64Value = numberOf(root, evaluation);
    } else {
        result.oText = textOf(root, evaluation);
    }
    return result;
}

}  // namespace cellformula
