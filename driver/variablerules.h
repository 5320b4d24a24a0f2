#ifndef CELLFORMULA_VARIABLERULES_H
#define CELLFORMULA_VARIABLERULES_H

// What a variable's record answers, for the node itself and for the nodes
// that read a cell operand in place.
#include <cstdint>

#include "astnode.h"
#include "variable.h"

namespace cellformula::rules {

// Where the host's current value is; a record without one reads as 0.
inline const double* recordSource(const VariableRecord& record) {
    static constexpr double kNoValue = 0.0;
    return record.pf64Value != nullptr ? record.pf64Value : &kNoValue;
}

inline double recordNumber(const VariableRecord& record) {
    return *recordSource(record);
}

// The host's own code first; otherwise a record without the value its type
// promises has no value.
inline std::uint32_t recordError(const VariableRecord& record) {
    if (record.u32Error != ErrNone) return record.u32Error;
    if (record.u32Type == ExprNumber) return record.pf64Value != nullptr ? ErrNone : ErrNoValue;
    return record.poText != nullptr ? ErrNone : ErrNoValue;
}

inline std::uint32_t recordType(const VariableRecord& record) {
    return record.u32Type;
}

// Only a number cell stands on a compiled program's stack or answers a walk.
inline bool recordIsNumber(const VariableRecord& record) {
    return record.u32Type == ExprNumber;
}

// The record of an operand that is the library's own variable node, which
// its parent may read in place; null for any other node, a host's subclass
// of the variable included.
inline const VariableRecord* plainRecord(const ASTNode& node) {
    if (!isExactly<CNVariable>(node)) return nullptr;
    return &static_cast<const CNVariable&>(node).oRecord;
}

}  // namespace cellformula::rules

#endif
