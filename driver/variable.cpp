#include "variable.h"

#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;

namespace {

// Where the host's current value is; a record without one reads as 0.
const double* recordSource(const VariableRecord& record) {
    static constexpr double kNoValue = 0.0;
    return record.pf64Value != nullptr ? record.pf64Value : &kNoValue;
}

double recordNumber(const VariableRecord& record) {
    return *recordSource(record);
}

// The host's own code first; otherwise a record without the value its type
// promises has no value.
std::uint32_t recordError(const VariableRecord& record) {
    if (record.u32Error != ErrNone) return record.u32Error;
    if (record.u32Type == ExprNumber) return record.pf64Value != nullptr ? ErrNone : ErrNoValue;
    return record.poText != nullptr ? ErrNone : ErrNoValue;
}

const double* variableSource(const ASTNode& node) {
    return recordSource(static_cast<const CNVariable&>(node).oRecord);
}

double variableNumber(const ASTNode& node, const StackOperands&) {
    return recordNumber(static_cast<const CNVariable&>(node).oRecord);
}

std::uint32_t variableError(const ASTNode& node, const StackOperands&) {
    return recordError(static_cast<const CNVariable&>(node).oRecord);
}

constexpr cellformula::StackRules kVariableRules{
    cellformula::leafRules<CNVariable, &variableSource, &variableNumber, &variableError>()};

}  // namespace

CNVariable::CNVariable(const VariableRecord& record) : oRecord(record) {}

double CNVariable::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNVariable::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return recordNumber(oRecord);
}

void CNVariable::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    if (oRecord.poText != nullptr) text += *oRecord.poText;
}

std::uint32_t CNVariable::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return oRecord.u32Type;
}

std::uint32_t CNVariable::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return recordError(oRecord);
}

// Only a number cell can stand on a compiled program's stack.
const cellformula::StackRules* CNVariable::stackRules() const {
    return oRecord.u32Type == ExprNumber ? &kVariableRules : nullptr;
}

cellformula::WalkedAnswer CNVariable::walkWithin(cellformula::Evaluation& evaluation) const {
    if (oRecord.u32Type != ExprNumber) return cellformula::WalkedAnswer{};
    return kVariableRules.walk(*this, evaluation);
}

void CNVariable::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNVariable::writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue&,
                                  bool entry) const {
    if (!entry && !cellformula::isExactly<CNVariable>(*this)) return false;
    writeIndent(stream, depth);
    if (oRecord.u32Type == ExprNumber) {
        stream << f64Evaluate();
    } else {
        stream << stringEvaluate();
    }
    stream << std::endl;
    return true;
}
