#include "radix.h"

#include <bitset>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "operation.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

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

std::uint32_t textResult(Operands&) {
    return ExprString;
}

std::uint32_t decimalToBinaryError(Operands& operands) {
    const std::uint32_t error = operands.error(0);
    if (error != ErrNone) return error;
    if (operands.type(0) == ExprString) return ErrInvalidArg;
    const double value = operands.number(0);
    return (value < 0.0 || value > 255.0) ? ErrInvalidArg : ErrNone;
}

std::uint32_t decimalToHexError(Operands& operands) {
    const std::uint32_t error = operands.error(0);
    if (error != ErrNone) return error;
    if (operands.number(0) < 0.0) return ErrInvalidArg;
    return operands.type(0) != ExprNumber ? ErrInvalidArg : ErrNone;
}

std::uint32_t binaryError(Operands& operands) {
    const std::uint32_t error = operands.error(0);
    if (error != ErrNone) return error;
    const std::string& text = operands.text(0);
    return (!onlyDigitsOf(text, kBinaryDigits) || text.size() > 8) ? ErrInvalidArg : ErrNone;
}

template <bool ToBinary>
std::uint32_t hexError(Operands& operands) {
    const std::uint32_t error = operands.error(0);
    if (error != ErrNone) return error;
    const std::string& text = operands.text(0);
    if (!onlyDigitsOf(text, kHexDigits)) return ErrInvalidArg;
    if (ToBinary) return static_cast<std::uint32_t>(readHex(text)) > 255 ? ErrInvalidArg : ErrNone;
    return readHex(text) < 0 ? ErrInvalidArg : ErrNone;
}

// Up to eight binary digits, read as std::bitset<8> reads them: any other
// character among them raises std::invalid_argument.
double binaryValue(Operands& operands) {
    const std::string& text = operands.text(0);
    try {
        return static_cast<double>(std::bitset<8>(text, 0, 8).to_ulong());
    } catch (...) {
        operands.raiseOwn();
    }
}

constexpr Asks kNumberAsks{kType | kError | kNumber, 0};
constexpr Asks kTextAsks{kError | kText, 0};

}  // namespace

extern const Rules kDec2BinRules{
    Shape::One, Kind::Text, {kNothing, kNumberAsks, kNothing, kNumbers}, &textResult, &decimalToBinaryError,
    nullptr, [](Operands& operands, std::string& text) { text = binaryDigits(toUnsigned32(operands.number(0))); }};

extern const Rules kDec2HexRules{
    Shape::One, Kind::Text, {kNothing, kNumberAsks, kNothing, kNumbers}, &textResult, &decimalToHexError, nullptr,
    [](Operands& operands, std::string& text) { text = hexDigits(toUnsigned32(operands.number(0))); }};

extern const Rules kBin2DecRules{Shape::One, Kind::Number, {kNothing, kTextAsks, kTexts, kNothing}, nullptr,
                                 &binaryError, &binaryValue, nullptr};

extern const Rules kHex2DecRules{
    Shape::One, Kind::Number, {kNothing, kTextAsks, kTexts, kNothing}, nullptr, &hexError<false>,
    [](Operands& operands) { return static_cast<double>(readHex(operands.text(0))); }, nullptr};

extern const Rules kBin2HexRules{
    Shape::One, Kind::Text, {kNothing, kTextAsks, kNothing, kTexts}, &textResult, &binaryError, nullptr,
    [](Operands& operands, std::string& text) {
        text = hexDigits(static_cast<std::uint32_t>(std::strtol(operands.text(0).c_str(), nullptr, 2)));
    }};

extern const Rules kHex2BinRules{
    Shape::One, Kind::Text, {kNothing, kTextAsks, kNothing, kTexts}, &textResult, &hexError<true>, nullptr,
    [](Operands& operands, std::string& text) {
        text = binaryDigits(static_cast<std::uint32_t>(readHex(operands.text(0))));
    }};

}  // namespace cellformula

CNDec2Bin::CNDec2Bin(ASTNode* operand) : CNSingleChildNode(operand, "Dec To Bin") {}
double CNDec2Bin::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Dec2Bin); }
std::uint32_t CNDec2Bin::exprType() { return cellformula::typeAs(*this, Operation::Dec2Bin); }
std::uint32_t CNDec2Bin::errType() { return cellformula::errorAs(*this, Operation::Dec2Bin); }
std::string CNDec2Bin::stringEvaluate() const { return cellformula::textAs(*this, Operation::Dec2Bin); }
Operation CNDec2Bin::operation() const { return Operation::Dec2Bin; }

CNBin2Dec::CNBin2Dec(ASTNode* operand) : CNSingleChildNode(operand, "Bin To Dec") {}
double CNBin2Dec::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Bin2Dec); }
std::uint32_t CNBin2Dec::exprType() { return cellformula::typeAs(*this, Operation::Bin2Dec); }
std::uint32_t CNBin2Dec::errType() { return cellformula::errorAs(*this, Operation::Bin2Dec); }
Operation CNBin2Dec::operation() const { return Operation::Bin2Dec; }

CNDec2Hex::CNDec2Hex(ASTNode* operand) : CNSingleChildNode(operand, "Dec To Hex") {}
double CNDec2Hex::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Dec2Hex); }
std::uint32_t CNDec2Hex::exprType() { return cellformula::typeAs(*this, Operation::Dec2Hex); }
std::uint32_t CNDec2Hex::errType() { return cellformula::errorAs(*this, Operation::Dec2Hex); }
std::string CNDec2Hex::stringEvaluate() const { return cellformula::textAs(*this, Operation::Dec2Hex); }
Operation CNDec2Hex::operation() const { return Operation::Dec2Hex; }

CNHex2Dec::CNHex2Dec(ASTNode* operand) : CNSingleChildNode(operand, "Hex To Dec") {}
double CNHex2Dec::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Hex2Dec); }
std::uint32_t CNHex2Dec::exprType() { return cellformula::typeAs(*this, Operation::Hex2Dec); }
std::uint32_t CNHex2Dec::errType() { return cellformula::errorAs(*this, Operation::Hex2Dec); }
Operation CNHex2Dec::operation() const { return Operation::Hex2Dec; }

CNBin2Hex::CNBin2Hex(ASTNode* operand) : CNSingleChildNode(operand, "Bin To Hex") {}
double CNBin2Hex::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Bin2Hex); }
std::uint32_t CNBin2Hex::exprType() { return cellformula::typeAs(*this, Operation::Bin2Hex); }
std::uint32_t CNBin2Hex::errType() { return cellformula::errorAs(*this, Operation::Bin2Hex); }
std::string CNBin2Hex::stringEvaluate() const { return cellformula::textAs(*this, Operation::Bin2Hex); }
Operation CNBin2Hex::operation() const { return Operation::Bin2Hex; }

CNHex2Bin::CNHex2Bin(ASTNode* operand) : CNSingleChildNode(operand, "Hex To Bin") {}
double CNHex2Bin::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Hex2Bin); }
std::uint32_t CNHex2Bin::exprType() { return cellformula::typeAs(*this, Operation::Hex2Bin); }
std::uint32_t CNHex2Bin::errType() { return cellformula::errorAs(*this, Operation::Hex2Bin); }
std::string CNHex2Bin::stringEvaluate() const { return cellformula::textAs(*this, Operation::Hex2Bin); }
Operation CNHex2Bin::operation() const { return Operation::Hex2Bin; }
