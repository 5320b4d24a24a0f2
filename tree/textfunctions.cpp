#include "textfunctions.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <ios>
#include <locale>

#include "operation.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

namespace {

// Truncates toward zero into the signed 32-bit range; NaN counts as 0.
std::int32_t toInt32(double value) {
    if (std::isnan(value)) return 0;
    if (value <= static_cast<double>(INT32_MIN)) return INT32_MIN;
    if (value >= static_cast<double>(INT32_MAX)) return INT32_MAX;
    return static_cast<std::int32_t>(value);
}

std::int32_t clampedLength(std::size_t size) {
    return static_cast<std::int32_t>(std::min<std::size_t>(size, INT32_MAX));
}

// Position of a character in a TEXT format, -1 where it does not occur.
std::int32_t positionOf(std::size_t position) {
    return position == std::string::npos ? -1 : clampedLength(position);
}

std::streamsize toStreamSize(long long value) {
    return static_cast<std::streamsize>(std::max<long long>(std::min<long long>(value, INT_MAX), INT_MIN));
}

std::string formatValue(double value, const std::string& format) {
    const long long point = positionOf(format.find('.'));
    const long long firstZero = positionOf(format.find('0'));
    const long long lastZero = positionOf(format.rfind('0'));
    long long integerPlaces = point - firstZero;
    long long decimals = lastZero - point;
    if (point < 0) {
        integerPlaces = clampedLength(format.size()) - firstZero;
        decimals = 0;
    } else if (point == 0) {
        integerPlaces = 0;
        decimals = lastZero;
    }
    std::ostringstream stream;
    // The classic locale, so that a host's decimal comma never reaches the text.
    stream.imbue(std::locale::classic());
    stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
    stream.setf(std::ios_base::right, std::ios_base::adjustfield);
    stream.fill('0');
    stream.width(toStreamSize(integerPlaces + decimals + 1));
    // A negative precision means the stream's default of six decimals.
    stream.precision(toStreamSize(decimals));
    stream << value;
    return stream.str();
}

// Digits before the point that a value needs; up to 1.0 (negatives too) one.
std::int32_t integerDigits(double value) {
    if (value <= 1.0) return 1;
    return toInt32(std::log10(value) + 1.0);
}

std::uint32_t textResult(Operands&) {
    return ExprString;
}

std::uint32_t formatError(Operands& operands) {
    if (operands.anyAbsent()) return ErrInvalidArg;
    if (operands.type(0) != ExprNumber) return ErrWrongType;
    if (operands.type(1) != ExprString) return ErrWrongType;
    const std::string& format = operands.text(1);
    if (format.empty()) return ErrWrongType;
    const std::uint32_t valueError = operands.error(0);
    if (valueError != ErrNone) return valueError;
    const std::uint32_t ownError = operands.error(1);
    if (ownError != ErrNone) return ownError;
    const long long places = static_cast<long long>(positionOf(format.find('.'))) - positionOf(format.find('0'));
    if (integerDigits(operands.number(0)) > places) return ErrWrongType;
    return format.find_first_not_of("0.") != std::string::npos ? ErrWrongType : ErrNone;
}

void formatted(Operands& operands, std::string& text) {
    const std::string format = operands.takeText(1);
    text = formatValue(operands.number(0), format);
}

std::uint32_t cutError(Operands& operands) {
    if (operands.anyAbsent()) return ErrInvalidArg;
    const std::uint32_t textType = operands.type(0);
    const bool usable = textType == ExprString || textType == ExprNumber;
    if (!usable && operands.type(1) != ExprNumber) return ErrWrongType;
    const std::uint32_t textError = operands.error(0);
    if (textError != ErrNone) return textError;
    const std::uint32_t countError = operands.error(1);
    if (countError != ErrNone) return countError;
    // The operand's own text is judged here, even of a number.
    if (operands.text(0).empty()) return ErrWrongType;
    return operands.number(1) < 1.0 ? ErrWrongType : ErrNone;
}

// LEFT and RIGHT cut a number operand's formatted value, or the operand's text.
template <bool FromLeft>
void cut(Operands& operands, std::string& text) {
    text = operands.type(0) == ExprNumber ? QuandelUtils::sstringify(operands.number(0)) : operands.takeText(0);
    const std::int32_t count = toInt32(operands.number(1));
    const std::int32_t length = clampedLength(text.size());
    if (length <= count) return;
    if (FromLeft) {
        if (count >= 0) text.resize(static_cast<std::size_t>(count));
        return;
    }
    try {
        // A negative count starts beyond the end, which substr reports as out_of_range.
        text = text.substr(static_cast<std::size_t>(static_cast<std::int64_t>(length) - count));
    } catch (...) {
        operands.raiseOwn();
    }
}

constexpr Asks kFormatErrorAsks{kType | kError | kNumber, kType | kError | kText};
constexpr Asks kCutErrorAsks{kType | kError | kText, kType | kError | kNumber};
constexpr Asks kCutAsks{kType | kNumber | kTextIfAnyNotNumber, kNumber};

}  // namespace

extern const Rules kTextRules{Shape::Pair, Kind::Text, {kNothing, kFormatErrorAsks, kNothing, {kNumber, kText}},
                              &textResult, &formatError, nullptr, &formatted};
extern const Rules kLeftRules{Shape::Pair, Kind::Text, {kNothing, kCutErrorAsks, kNothing, kCutAsks}, &textResult,
                              &cutError, nullptr, &cut<true>};
extern const Rules kRightRules{Shape::Pair, Kind::Text, {kNothing, kCutErrorAsks, kNothing, kCutAsks}, &textResult,
                               &cutError, nullptr, &cut<false>};

}  // namespace cellformula

CNText::CNText(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "Format Value") {}
double CNText::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Text); }
std::uint32_t CNText::exprType() { return cellformula::typeAs(*this, Operation::Text); }
std::uint32_t CNText::errType() { return cellformula::errorAs(*this, Operation::Text); }
std::string CNText::stringEvaluate() const { return cellformula::textAs(*this, Operation::Text); }
Operation CNText::operation() const { return Operation::Text; }

CNLeft::CNLeft(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "select left chars of string ") {}
double CNLeft::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Left); }
std::uint32_t CNLeft::exprType() { return cellformula::typeAs(*this, Operation::Left); }
std::uint32_t CNLeft::errType() { return cellformula::errorAs(*this, Operation::Left); }
std::string CNLeft::stringEvaluate() const { return cellformula::textAs(*this, Operation::Left); }
Operation CNLeft::operation() const { return Operation::Left; }

CNRight::CNRight(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "select right chars of string") {}
double CNRight::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Right); }
std::uint32_t CNRight::exprType() { return cellformula::typeAs(*this, Operation::Right); }
std::uint32_t CNRight::errType() { return cellformula::errorAs(*this, Operation::Right); }
std::string CNRight::stringEvaluate() const { return cellformula::textAs(*this, Operation::Right); }
Operation CNRight::operation() const { return Operation::Right; }
