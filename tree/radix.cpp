#include "radix.h"

#include <bitset>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using cellformula::Evaluation;
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

CNDec2Bin::CNDec2Bin(ASTNode* operand) : CNSingleChildNode(operand, "Dec To Bin") {}

double CNDec2Bin::f64Evaluate() const {
    return 0.0;
}

std::uint32_t CNDec2Bin::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

CNBin2Dec::CNBin2Dec(ASTNode* operand) : CNSingleChildNode(operand, "Bin To Dec") {}

double CNBin2Dec::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

CNDec2Hex::CNDec2Hex(ASTNode* operand) : CNSingleChildNode(operand, "Dec To Hex") {}

double CNDec2Hex::f64Evaluate() const {
    return 0.0;
}

std::uint32_t CNDec2Hex::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

CNHex2Dec::CNHex2Dec(ASTNode* operand) : CNSingleChildNode(operand, "Hex To Dec") {}

double CNHex2Dec::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

CNBin2Hex::CNBin2Hex(ASTNode* operand) : CNSingleChildNode(operand, "Bin To Hex") {}

double CNBin2Hex::f64Evaluate() const {
    return 0.0;
}

std::uint32_t CNBin2Hex::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

CNHex2Bin::CNHex2Bin(ASTNode* operand) : CNSingleChildNode(operand, "Hex To Bin") {}

double CNHex2Bin::f64Evaluate() const {
    return 0.0;
}

std::uint32_t CNHex2Bin::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

void CNDec2Bin::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += binaryDigits(toUnsigned32(numberOf(*poChild, evaluation)));
}

std::uint32_t CNDec2Bin::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    if (typeOf(*poChild, evaluation) == ExprString) return ErrInvalidArg;
    const double value = numberOf(*poChild, evaluation);
    return (value < 0.0 || value > 255.0) ? ErrInvalidArg : ErrNone;
}

void CNDec2Hex::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += hexDigits(toUnsigned32(numberOf(*poChild, evaluation)));
}

std::uint32_t CNDec2Hex::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    if (numberOf(*poChild, evaluation) < 0.0) return ErrInvalidArg;
    return typeOf(*poChild, evaluation) != ExprNumber ? ErrInvalidArg : ErrNone;
}

double CNBin2Dec::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return binaryValue(textOf(*poChild, evaluation));
}

std::uint32_t CNBin2Dec::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    return binaryTextError(textOf(*poChild, evaluation));
}

double CNHex2Dec::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return static_cast<double>(readHex(textOf(*poChild, evaluation)));
}

std::uint32_t CNHex2Dec::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    const std::string text = textOf(*poChild, evaluation);
    if (!onlyDigitsOf(text, kHexDigits)) return ErrInvalidArg;
    return readHex(text) < 0 ? ErrInvalidArg : ErrNone;
}

void CNBin2Hex::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    const long binary = std::strtol(textOf(*poChild, evaluation).c_str(), nullptr, 2);
    text += hexDigits(static_cast<std::uint32_t>(binary));
}

std::uint32_t CNBin2Hex::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    return binaryTextError(textOf(*poChild, evaluation));
}

void CNHex2Bin::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += binaryDigits(static_cast<std::uint32_t>(readHex(textOf(*poChild, evaluation))));
}

std::uint32_t CNHex2Bin::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    const std::uint32_t operand = errorOf(*poChild, evaluation);
    if (operand != ErrNone) return operand;
    const std::string text = textOf(*poChild, evaluation);
    if (!onlyDigitsOf(text, kHexDigits)) return ErrInvalidArg;
    return static_cast<std::uint32_t>(readHex(text)) > 255u ? ErrInvalidArg : ErrNone;
}
