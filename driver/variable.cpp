#include "variable.h"

#include "operands.h"
#include "variablerules.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::rules::recordError;
using cellformula::rules::recordIsNumber;
using cellformula::rules::recordNumber;
using cellformula::rules::recordSource;
using cellformula::rules::recordType;

namespace {

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
    return recordType(oRecord);
}

std::uint32_t CNVariable::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return recordError(oRecord);
}

const cellformula::StackRules* CNVariable::stackRules() const {
    return recordIsNumber(oRecord) ? &kVariableRules : nullptr;
}

cellformula::WalkedAnswer CNVariable::walkWithin(cellformula::Evaluation& evaluation) const {
    if (!recordIsNumber(oRecord)) return cellformula::WalkedAnswer{};
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
