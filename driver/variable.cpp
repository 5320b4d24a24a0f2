#include "variable.h"

using cellformula::Answer;
using cellformula::EvaluationScope;
using cellformula::Query;

CNVariable::CNVariable(const VariableRecord& record) : oRecord(record) {}

double CNVariable::f64Evaluate() const {
    return oRecord.pf64Value != nullptr ? *oRecord.pf64Value : 0.0;
}

std::string CNVariable::stringEvaluate() const {
    return oRecord.poText != nullptr ? *oRecord.poText : std::string();
}

std::uint32_t CNVariable::exprType() {
    return oRecord.u32Type;
}

std::uint32_t CNVariable::errType() {
    if (oRecord.u32Error != ErrNone) return oRecord.u32Error;
    if (oRecord.u32Type == ExprNumber) return oRecord.pf64Value != nullptr ? ErrNone : ErrNoValue;
    return oRecord.poText != nullptr ? ErrNone : ErrNoValue;
}

Answer CNVariable::answerWithin(Query query, EvaluationScope&) const {
    auto& self = const_cast<CNVariable&>(*this);  // the two codes only read the record
    switch (query) {
        case Query::Number: return Answer::ofNumber(f64Evaluate());
        case Query::Text: return Answer::ofText(stringEvaluate());
        case Query::Type: return Answer::ofCode(self.CNVariable::exprType());
        case Query::Error: return Answer::ofCode(self.CNVariable::errType());
    }
    return Answer();
}

void CNVariable::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    if (oRecord.u32Type == ExprNumber) {
        stream << f64Evaluate();
    } else {
        stream << stringEvaluate();
    }
    stream << std::endl;
}
