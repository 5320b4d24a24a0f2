#include "radix.h"

#include <bitset>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using cellformula::EvaluationScope;
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

// The four radix texts: no value, a text type, digits as text.
#define CELLFORMULA_RADIX_TEXT_WITHIN(Class)                                                        \
    double Class::numberWithin(EvaluationScope&) const { return 0.0; }                           \
    std::uint32_t Class::typeWithin(EvaluationScope&) const { return ExprString; }

CELLFORMULA_RADIX_TEXT_WITHIN(CNDec2Bin)
CELLFORMULA_RADIX_TEXT_WITHIN(CNDec2Hex)
CELLFORMULA_RADIX_TEXT_WITHIN(CNBin2Hex)
CELLFORMULA_RADIX_TEXT_WITHIN(CNHex2Bin)

#undef CELLFORMULA_RADIX_TEXT_WITHIN

std::string CNDec2Bin::textWithin(EvaluationScope& scope) const {
    return binaryDigits(toUnsigned32(numberOf(*poChild, scope)));
}

std::uint32_t CNDec2Bin::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    if (typeOf(*poChild, scope) == ExprString) return ErrInvalidArg;
    const double value = numberOf(*poChild, scope);
    return (value < 0.0 || value > 255.0) ? ErrInvalidArg : ErrNone;
}

std::string CNDec2Hex::textWithin(EvaluationScope& scope) const {
    return hexDigits(toUnsigned32(numberOf(*poChild, scope)));
}

std::uint32_t CNDec2Hex::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    if (numberOf(*poChild, scope) < 0.0) return ErrInvalidArg;
    return typeOf(*poChild, scope) != ExprNumber ? ErrInvalidArg : ErrNone;
}

double CNBin2Dec::numberWithin(EvaluationScope& scope) const {
    return binaryValue(textOf(*poChild, scope));
}

std::uint32_t CNBin2Dec::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    return binaryTextError(textOf(*poChild, scope));
}

double CNHex2Dec::numberWithin(EvaluationScope& scope) const {
    return static_cast<double>(readHex(textOf(*poChild, scope)));
}

std::uint32_t CNHex2Dec::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    const std::string text = textOf(*poChild, scope);
    if (!onlyDigitsOf(text, kHexDigits)) return ErrInvalidArg;
    return readHex(text) < 0 ? ErrInvalidArg : ErrNone;
}

std::string CNBin2Hex::textWithin(EvaluationScope& scope) const {
    const long binary = std::strtol(textOf(*poChild, scope).c_str(), nullptr, 2);
    return hexDigits(static_cast<std::uint32_t>(binary));
}

std::uint32_t CNBin2Hex::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    return binaryTextError(textOf(*poChild, scope));
}

std::string CNHex2Bin::textWithin(EvaluationScope& scope) const {
    return binaryDigits(static_cast<std::uint32_t>(readHex(textOf(*poChild, scope))));
}

std::uint32_t CNHex2Bin::errorWithin(EvaluationScope& scope) const {
    const std::uint32_t operand = errorOf(*poChild, scope);
    if (operand != ErrNone) return operand;
    const std::string text = textOf(*poChild, scope);
    if (!onlyDigitsOf(text, kHexDigits)) return ErrInvalidArg;
    return static_cast<std::uint32_t>(readHex(text)) > 255u ? ErrInvalidArg : ErrNone;
}
