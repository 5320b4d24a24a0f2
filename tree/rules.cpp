#include "rules.h"

namespace cellformula {

bool Operands::anyAbsent() const {
    for (std::size_t i = 0; i < count_; ++i) {
        if (slots_[i].absent) return true;
    }
    return false;
}

void Operands::askHost(std::size_t i, Question question) {
    Slot& slot = slots_[i];
    switch (question) {
        case kType:
            slot.type = slot.host->exprType();
            break;
        case kError:
            slot.error = slot.host->errType();
            break;
        case kNumber:
            slot.number = slot.host->f64Evaluate();
            break;
        default:
            texts_[i] = slot.host->stringEvaluate();
            break;
    }
    slot.known |= question;
}

void Operands::raiseOwn() {
    raises_.push_back(std::current_exception());
    throw Raise{Raise::kOwn, static_cast<std::uint32_t>(raises_.size())};
}

bool isNotNumber(std::uint32_t type) {
    return type != ExprNumber;
}

bool hasNoType(std::uint32_t type) {
    return type == ExprNoType;
}

std::uint32_t operandsError(Operands& operands, bool (*wrong)(std::uint32_t)) {
    if (operands.anyAbsent()) return ErrInvalidArg;
    if (!operands.isList()) {
        if (wrong(operands.type(0)) || wrong(operands.type(1))) return ErrWrongType;
        const std::uint32_t left = operands.error(0);
        return left != ErrNone ? left : operands.error(1);
    }
    for (std::size_t i = 0; i < operands.count(); ++i) {
        const std::uint32_t error = operands.error(i);
        if (error != ErrNone) return error;
        if (wrong(operands.type(i))) return ErrWrongType;
    }
    return ErrNone;
}

std::uint32_t oneOperandError(Operands& operands) {
    if (operands.absent(0)) return ErrInvalidArg;
    if (operands.type(0) != ExprNumber) return ErrWrongType;
    return operands.error(0);
}

}  // namespace cellformula
