#ifndef CELLFORMULA_FORMULARESULT_H
#define CELLFORMULA_FORMULARESULT_H

#include <cstdint>
#include <string>

#include "astnode.h"

namespace cellformula {

// Everything a host reads of a tree, from one call: the type, the error code,
// and the value as the type says to read it (the number for ExprNumber, the
// text otherwise; the other field stays 0 or empty).
struct FormulaResult {
    std::uint32_t u32Type = ExprNoType;
    std::uint32_t u32Error = ErrNone;
    double f64Value = 0.0;
    std::string oText;
};

// Gives exactly what exprType, errType and then f64Evaluate or stringEvaluate
// give, and throws where those would throw, while computing each node's
// answers once. A host's own nodes in the tree are asked through their public
// operations, each question at most once.
FormulaResult oEvaluateAll(const ASTNode& root);

}  // namespace cellformula

#endif
