#include "variable.h"

#include "operation.h"
#include "program.h"
#include "rules.h"
#include "treewalks.h"

using cellformula::Operation;
using cellformula::Operands;

namespace cellformula {

namespace {

const VariableRecord& recordOf(Operands& operands) {
    return operands.self<CNVariable>().oRecord;
}

// The host's own code first; otherwise a record without the value its type
// promises has no value.
std::uint32_t recordError(Operands& operands) {
    const VariableRecord& record = recordOf(operands);
    if (record.u32Error != ErrNone) return record.u32Error;
    if (record.u32Type == ExprNumber) return record.pf64Value != nullptr ? ErrNone : ErrNoValue;
    return record.poText != nullptr ? ErrNone : ErrNoValue;
}

}  // namespace

// A number is read where the host keeps it, a text copied; a missing one reads as 0 or empty.
extern const Rules kVariableRules{
    Shape::Leaf, Kind::FromOperands, {}, [](Operands& operands) { return recordOf(operands).u32Type; }, &recordError,
    [](Operands& operands) {
        const VariableRecord& record = recordOf(operands);
        return record.pf64Value != nullptr ? *record.pf64Value : 0.0;
    },
    [](Operands& operands, std::string& text) {
        const VariableRecord& record = recordOf(operands);
        if (record.poText != nullptr) text = *record.poText;
    }};

}  // namespace cellformula

CNVariable::CNVariable(const VariableRecord& record) : oRecord(record) {}
double CNVariable::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Variable); }
void CNVariable::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::Variable, stream, depth);
}
std::uint32_t CNVariable::exprType() { return cellformula::typeAs(*this, Operation::Variable); }
std::uint32_t CNVariable::errType() { return cellformula::errorAs(*this, Operation::Variable); }
std::string CNVariable::stringEvaluate() const { return cellformula::textAs(*this, Operation::Variable); }
Operation CNVariable::operation() const { return Operation::Variable; }
