#include "radix.h"

#include <bitset>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using cellformula::Answer;
using cellformula::EvaluationScope;
using cellformula::Query;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

namespace {

const char* const kBinaryDigits = "01";
const char* const kHexDigits = "0123456789abcdefABCDEF";

// Truncates toward zero into 0..4294967295; NaN counts as 0.
std::uint32_t toUnsigned32(double value) {
    if (std::isnan(value) || value <= 0.0) return 0;
    if (value >= 4294967295.0) return 4294967295u;
    return static_cast<std::uint32_t>(value);
}

// Eight binary digits of the low byte, leading zeros dropped when the byte is
// not zero; 0 itself is "0".
std::string binaryDigits(std::uint32_t value) {
    if (value == 0) return "0";
    const std::string bits = std::bitset<8>(value & 0xFFu).to_string();
    const std::size_t firstOne = bits.find('1');
    if (firstOne == 0 || firstOne == std::string::npos) return bits;
    return bits.substr(firstOne);
}

std::string hexDigits(std::uint32_t value) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%X", static_cast<unsigned int>(value));
    return digits;
}

long long readHex(const std::string& text) {
    return std::strtol(text.c_str(), nullptr, 16);
}

bool onlyDigitsOf(const std::string& text, const char* digits) {
    return text.find_first_not_of(digits) == std::string::npos;
}

// Up to eight binary digits, read as std::bitset<8> reads them: any other
// character among them throws std::invalid_argument.
double binaryValue(const std::string& text) {
    return static_cast<double>(std::bitset<8>(text, 0, 8).to_ulong());
}

std::uint32_t binaryTextError(const std::string& text) {
    if (!onlyDigitsOf(text, kBinaryDigits)) return ErrInvalidArg;
    return text.size() > 8 ? ErrInvalidArg : ErrNone;
}

}  // namespace

#define CELLFORMULA_RADIX_COMMON(Class, Label, Type)                                   \
    Class::Class(ASTNode* operand) : CNSingleChildNode(operand, Label) {}             \
    double Class::f64Evaluate() const { return cellformula::evaluateNumber(*this); }   \
    std::uint32_t Class::exprType() { return Type; }                                   \
    std::uint32_t Class::errType() { return cellformula::evaluateError(*this); }

#define CELLFORMULA_RADIX_TEXT(Class) \
    std::string Class::stringEvaluate() const { return cellformula::evaluateText(*this); }

CELLFORMULA_RADIX_COMMON(CNDec2Bin, "Dec To Bin", ExprString)
CELLFORMULA_RADIX_TEXT(CNDec2Bin)
CELLFORMULA_RADIX_COMMON(CNBin2Dec, "Bin To Dec", ExprNumber)
CELLFORMULA_RADIX_COMMON(CNDec2Hex, "Dec To Hex", ExprString)
CELLFORMULA_RADIX_TEXT(CNDec2Hex)
CELLFORMULA_RADIX_COMMON(CNHex2Dec, "Hex To Dec", ExprNumber)
CELLFORMULA_RADIX_COMMON(CNBin2Hex, "Bin To Hex", ExprString)
CELLFORMULA_RADIX_TEXT(CNBin2Hex)
CELLFORMULA_RADIX_COMMON(CNHex2Bin, "Hex To Bin", ExprString)
CELLFORMULA_RADIX_TEXT(CNHex2Bin)

#undef CELLFORMULA_RADIX_COMMON
#undef CELLFORMULA_RADIX_TEXT

Answer CNDec2Bin::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(0.0);
        case Query::Type: return Answer::ofCode(ExprString);
        case Query::Text: return Answer::ofText(binaryDigits(toUnsigned32(numberOf(*poChild, scope))));
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            if (typeOf(*poChild, scope) == ExprString) return Answer::ofCode(ErrInvalidArg);
            const double value = numberOf(*poChild, scope);
            return Answer::ofCode((value < 0.0 || value > 255.0) ? ErrInvalidArg : ErrNone);
        }
    }
    return Answer();
}

Answer CNDec2Hex::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(0.0);
        case Query::Type: return Answer::ofCode(ExprString);
        case Query::Text: return Answer::ofText(hexDigits(toUnsigned32(numberOf(*poChild, scope))));
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            if (numberOf(*poChild, scope) < 0.0) return Answer::ofCode(ErrInvalidArg);
            return Answer::ofCode(typeOf(*poChild, scope) != ExprNumber ? ErrInvalidArg : ErrNone);
        }
    }
    return Answer();
}

Answer CNBin2Dec::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(binaryValue(textOf(*poChild, scope)));
        case Query::Type: return Answer::ofCode(ExprNumber);
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            return Answer::ofCode(binaryTextError(textOf(*poChild, scope)));
        }
        case Query::Text: break;
    }
    return CNSingleChildNode::answerWithin(query, scope);
}

Answer CNHex2Dec::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(static_cast<double>(readHex(textOf(*poChild, scope))));
        case Query::Type: return Answer::ofCode(ExprNumber);
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            const std::string text = textOf(*poChild, scope);
            if (!onlyDigitsOf(text, kHexDigits)) return Answer::ofCode(ErrInvalidArg);
            return Answer::ofCode(readHex(text) < 0 ? ErrInvalidArg : ErrNone);
        }
        case Query::Text: break;
    }
    return CNSingleChildNode::answerWithin(query, scope);
}

Answer CNBin2Hex::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(0.0);
        case Query::Type: return Answer::ofCode(ExprString);
        case Query::Text: {
            const long binary = std::strtol(textOf(*poChild, scope).c_str(), nullptr, 2);
            return Answer::ofText(hexDigits(static_cast<std::uint32_t>(binary)));
        }
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            return Answer::ofCode(binaryTextError(textOf(*poChild, scope)));
        }
    }
    return Answer();
}

Answer CNHex2Bin::answerWithin(Query query, EvaluationScope& scope) const {
    switch (query) {
        case Query::Number: return Answer::ofNumber(0.0);
        case Query::Type: return Answer::ofCode(ExprString);
        case Query::Text: {
            const auto value = static_cast<std::uint32_t>(readHex(textOf(*poChild, scope)));
            return Answer::ofText(binaryDigits(value));
        }
        case Query::Error: {
            const std::uint32_t operand = errorOf(*poChild, scope);
            if (operand != ErrNone) return Answer::ofCode(operand);
            const std::string text = textOf(*poChild, scope);
            if (!onlyDigitsOf(text, kHexDigits)) return Answer::ofCode(ErrInvalidArg);
            return Answer::ofCode(static_cast<std::uint32_t>(readHex(text)) > 255u ? ErrInvalidArg : ErrNone);
        }
    }
    return Answer();
}
