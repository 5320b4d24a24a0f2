#include "rules.h"

namespace cellformula {

bool Operands::anyAbsent() const {
    for (std::size_t i = 0; i < count_; ++i) {
        if (slots_[i].absent) return true;
    }
    return false;
}

std::uint32_t Operands::type(std::size_t i) {
    Slot& slot = slots_[i];
    if (slot.host != nullptr && (slot.known & kType) == 0) {
        slot.type = slot.host->exprType();
        slot.known |= kType;
    }
    return slot.type;
}

std::uint32_t Operands::error(std::size_t i) {
    Slot& slot = slots_[i];
    if (slot.host != nullptr && (slot.known & kError) == 0) {
        slot.error = slot.host->errType();
        slot.known |= kError;
    }
    return slot.error;
}

double Operands::number(std::size_t i) {
    Slot& slot = slots_[i];
    if (slot.host != nullptr && (slot.known & kNumber) == 0) {
        slot.number = slot.host->f64Evaluate();
        slot.known |= kNumber;
    }
    if (slot.numberRaise != 0) throw Raise{i, slot.numberRaise};
    return slot.number;
}

const std::string& Operands::text(std::size_t i) {
    Slot& slot = slots_[i];
    if (slot.host != nullptr && (slot.known & kText) == 0) {
        texts_[i] = slot.host->stringEvaluate();
        slot.known |= kText;
    }
    if (slot.textRaise != 0) throw Raise{i, slot.textRaise};
    return texts_[i];
}

std::string Operands::takeText(std::size_t i) {
    text(i);
    return std::move(texts_[i]);
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
