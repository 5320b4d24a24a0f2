#include "variable.h"

using cellformula::Evaluation;

CNVariable::CNVariable(const VariableRecord& record) : oRecord(record) {}

double CNVariable::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNVariable::numberWithin(Evaluation&) const {
    return oRecord.pf64Value != nullptr ? *oRecord.pf64Value : 0.0;
}

void CNVariable::appendTextWithin(Evaluation&, std::string& text) const {
    if (oRecord.poText != nullptr) text += *oRecord.poText;
}

std::uint32_t CNVariable::typeWithin(Evaluation&) const {
    return oRecord.u32Type;
}

std::uint32_t CNVariable::errorWithin(Evaluation&) const {
    if (oRecord.u32Error != ErrNone) return oRecord.u32Error;
    if (oRecord.u32Type == ExprNumber) return oRecord.pf64Value != nullptr ? ErrNone : ErrNoValue;
    return oRecord.poText != nullptr ? ErrNone : ErrNoValue;
}

void CNVariable::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNVariable::writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue&,
                                  bool) const {
    writeIndent(stream, depth);
    if (oRecord.u32Type == ExprNumber) {
        stream << f64Evaluate();
    } else {
        stream << stringEvaluate();
    }
    stream << std::endl;
    return true;
}
