#include "textfunctions.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <ios>
#include <stdexcept>

using cellformula::Evaluation;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

namespace {

// Truncates toward zero into the signed 32-bit range; NaN counts as 0.
std::int32_t toInt32(double value) {
    if (std::isnan(value)) return 0;
    if (value <= static_cast<double>(INT32_MIN)) return INT32_MIN;
    if (value >= static_cast<double>(INT32_MAX)) return INT32_MAX;
    return static_cast<std::int32_t>(value);
}

std::int32_t lengthOf(const std::string& text) {
    return static_cast<std::int32_t>(std::min<std::size_t>(text.size(), INT32_MAX));
}

// Positions in a TEXT format, -1 where the character does not occur.
struct FormatLayout {
    std::int32_t point;      // first '.'
    std::int32_t firstZero;  // first '0'
    std::int32_t lastZero;   // last '0'
};

std::int32_t positionOf(std::size_t position) {
    return position == std::string::npos ? -1 : static_cast<std::int32_t>(std::min<std::size_t>(position, INT32_MAX));
}

FormatLayout layoutOf(const std::string& format) {
    return FormatLayout{positionOf(format.find('.')), positionOf(format.find('0')), positionOf(format.rfind('0'))};
}

// Integer places and decimals of a format such as "00.00".
void placesOf(const std::string& format, long long& integerPlaces, long long& decimals) {
    const FormatLayout layout = layoutOf(format);
    if (layout.point < 0) {
        integerPlaces = static_cast<long long>(lengthOf(format)) - layout.firstZero;
        decimals = 0;
    } else if (layout.point == 0) {
        integerPlaces = 0;
        decimals = layout.lastZero;
    } else {
        integerPlaces = static_cast<long long>(layout.point) - layout.firstZero;
        decimals = static_cast<long long>(layout.lastZero) - layout.point;
    }
}

std::streamsize clampToStreamSize(long long value) {
    return static_cast<std::streamsize>(std::max<long long>(std::min<long long>(value, INT_MAX), INT_MIN));
}

std::string formatValue(double value, const std::string& format) {
    long long integerPlaces = 0;
    long long decimals = 0;
    placesOf(format, integerPlaces, decimals);
    std::stringstream stream;
    // The classic locale, so that a host's decimal comma never reaches the text.
    stream.imbue(std::locale::classic());
    stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
    stream.setf(std::ios_base::right, std::ios_base::adjustfield);
    stream.fill('0');
    stream.width(clampToStreamSize(integerPlaces + decimals + 1));
    // A negative precision means the stream's default of six decimals.
    stream.precision(clampToStreamSize(decimals));
    stream << value;
    return stream.str();
}

// Digits before the point that a value needs; up to 1.0 (negatives too) one.
std::int32_t integerDigits(double value) {
    if (value <= 1.0) return 1;
    return toInt32(std::log10(value) + 1.0);
}

std::uint32_t textError(const CNManyChildrenNode& node, Evaluation& evaluation) {
    if (node.poLeft == nullptr || node.poRight == nullptr) return ErrInvalidArg;
    if (typeOf(*node.poLeft, evaluation) != ExprNumber) return ErrWrongType;
    if (typeOf(*node.poRight, evaluation) != ExprString) return ErrWrongType;
    std::string format;
    try {
        format = textOf(*node.poRight, evaluation);
    } catch (const std::out_of_range&) {
        // Only a format that reports its own error (RIGHT with a negative
        // count) fails to evaluate; classifying reports that code instead.
        return errorOf(*node.poRight, evaluation);
    }
    if (format.empty()) return ErrWrongType;
    const std::uint32_t valueError = errorOf(*node.poLeft, evaluation);
    if (valueError != ErrNone) return valueError;
    const std::uint32_t formatError = errorOf(*node.poRight, evaluation);
    if (formatError != ErrNone) return formatError;
    const FormatLayout layout = layoutOf(format);
    const long long places = static_cast<long long>(layout.point) - layout.firstZero;
    if (integerDigits(numberOf(*node.poLeft, evaluation)) > places) return ErrWrongType;
    if (format.find_first_not_of("0.") != std::string::npos) return ErrWrongType;
    return ErrNone;
}

// The text LEFT and RIGHT cut from: a number operand formatted, else its text.
std::string sourceText(const CNManyChildrenNode& node, Evaluation& evaluation) {
    if (typeOf(*node.poLeft, evaluation) == ExprNumber) return QuandelUtils::sstringify(numberOf(*node.poLeft, evaluation));
    return textOf(*node.poLeft, evaluation);
}

std::string cut(const CNManyChildrenNode& node, bool fromLeft, Evaluation& evaluation) {
    std::string text = sourceText(node, evaluation);
    const std::int32_t count = toInt32(numberOf(*node.poRight, evaluation));
    const std::int32_t length = lengthOf(text);
    if (length <= count) return text;
    if (fromLeft) return count < 0 ? text : text.substr(0, static_cast<std::size_t>(count));
    // A negative count starts beyond the end, which substr reports as out_of_range.
    return text.substr(static_cast<std::size_t>(static_cast<std::int64_t>(length) - count));
}

std::uint32_t cutError(const CNManyChildrenNode& node, Evaluation& evaluation) {
    if (node.poLeft == nullptr || node.poRight == nullptr) return ErrInvalidArg;
    const std::uint32_t textType = typeOf(*node.poLeft, evaluation);
    const bool textUsable = textType == ExprString || textType == ExprNumber;
    if (!textUsable && typeOf(*node.poRight, evaluation) != ExprNumber) return ErrWrongType;
    const std::uint32_t textErr = errorOf(*node.poLeft, evaluation);
    if (textErr != ErrNone) return textErr;
    const std::uint32_t countErr = errorOf(*node.poRight, evaluation);
    if (countErr != ErrNone) return countErr;
    if (textOf(*node.poLeft, evaluation).empty()) return ErrWrongType;
    if (numberOf(*node.poRight, evaluation) < 1.0) return ErrWrongType;
    return ErrNone;
}

}  // namespace

// ---------------------------------------------------------------- CNText

CNText::CNText(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "Format Value") {}

double CNText::f64Evaluate() const {
    return 0.0;
}

void CNText::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    const std::string format = textOf(*poRight, evaluation);
    text += formatValue(numberOf(*poLeft, evaluation), format);
}

std::uint32_t CNText::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

std::uint32_t CNText::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return textError(*this, evaluation);
}

// ---------------------------------------------------------------- CNLeft, CNRight

CNLeft::CNLeft(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "select left chars of string ") {}

double CNLeft::f64Evaluate() const {
    return 0.0;
}

void CNLeft::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += cut(*this, true, evaluation);
}

std::uint32_t CNLeft::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

std::uint32_t CNLeft::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cutError(*this, evaluation);
}

CNRight::CNRight(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "select right chars of string") {}

double CNRight::f64Evaluate() const {
    return 0.0;
}

void CNRight::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += cut(*this, false, evaluation);
}

std::uint32_t CNRight::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

std::uint32_t CNRight::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cutError(*this, evaluation);
}
