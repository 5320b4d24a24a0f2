#include "functioncatalogue.h"

namespace ExpressionParser {
namespace {

using R = FunctionResult;
constexpr std::uint32_t kAny = FunctionCatalogue::kUnbounded;

std::vector<FunctionEntry> buildCatalogue() {
    return {
        {"SIN", "SIN(angle)", 1, 1, false, R::Number, "Sine of an angle in radians."},
        {"COS", "COS(angle)", 1, 1, false, R::Number, "Cosine of an angle in radians."},
        {"TAN", "TAN(angle)", 1, 1, false, R::Number, "Tangent of an angle in radians."},
        {"ASIN", "ASIN(value)", 1, 1, false, R::Number, "Arcsine in radians."},
        {"ACOS", "ACOS(value)", 1, 1, false, R::Number, "Arccosine in radians."},
        {"ATAN", "ATAN(value)", 1, 1, false, R::Number, "Arctangent in radians."},
        {"ATAN2", "ATAN2(y; x)", 2, 2, false, R::Number,
         "Arctangent of y/x in radians, in the quadrant given by both signs."},
        {"MAX", "MAX(value; ...)", 1, kAny, true, R::Number, "Largest of the values."},
        {"MIN", "MIN(value; ...)", 1, kAny, true, R::Number, "Smallest of the values."},
        {"SUM", "SUM(value; ...)", 1, kAny, true, R::FromArguments,
         "Sum of the values; joins them as text when one of them is a text."},
        {"AND", "AND(value; ...)", 1, kAny, true, R::Number, "1 if every value is non-zero, else 0."},
        {"OR", "OR(value; ...)", 1, kAny, true, R::Number, "1 if any value is non-zero, else 0."},
        {"NOT", "NOT(value)", 1, 1, false, R::Number, "1 if the value is 0, else 0."},
        {"SQRT", "SQRT(value)", 1, 1, false, R::Number, "Square root."},
        {"LN", "LN(value)", 1, 1, false, R::Number, "Natural logarithm."},
        {"LOG", "LOG(value; base)", 1, 2, false, R::Number, "Logarithm to the base, 10 when no base is given."},
        {"IF", "IF(condition; then; else)", 1, 3, false, R::FromArguments,
         "The then-value if the condition is non-zero, else the else-value."},
        {"PI", "PI()", 0, 0, false, R::Number, "The number pi."},
        {"ISERROR", "ISERROR(value)", 1, 1, false, R::Number, "1 if evaluating the value meets an error, else 0."},
        {"TEXT", "TEXT(value; format)", 2, 2, false, R::Text, "The number written by a format text such as \"0.00\"."},
        {"LEFT", "LEFT(text; count)", 2, 2, false, R::Text, "The first count characters of a text."},
        {"RIGHT", "RIGHT(text; count)", 2, 2, false, R::Text, "The last count characters of a text."},
        {"DEC2BIN", "DEC2BIN(number)", 1, 1, false, R::Text, "Binary digits of a whole number."},
        {"BIN2DEC", "BIN2DEC(text)", 1, 1, false, R::Number, "The number that a text of binary digits writes."},
        {"DEC2HEX", "DEC2HEX(number)", 1, 1, false, R::Text, "Hexadecimal digits of a whole number."},
        {"HEX2DEC", "HEX2DEC(text)", 1, 1, false, R::Number, "The number that a text of hexadecimal digits writes."},
        {"BIN2HEX", "BIN2HEX(text)", 1, 1, false, R::Text, "Hexadecimal digits of a text of binary digits."},
        {"HEX2BIN", "HEX2BIN(text)", 1, 1, false, R::Text, "Binary digits of a text of hexadecimal digits."},
    };
}

}  // namespace

const std::vector<FunctionEntry>& FunctionCatalogue::oGetFunctions() {
    static const std::vector<FunctionEntry> catalogue = buildCatalogue();
    return catalogue;
}

const FunctionEntry* FunctionCatalogue::poFind(const std::string& name) {
    for (const FunctionEntry& entry : oGetFunctions()) {
        // Keywords are read in capitals or in small letters, never mixed.
        std::string lower = entry.oName;
        for (char& c : lower) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        if (name == entry.oName || name == lower) return &entry;
    }
    return nullptr;
}

}  // namespace ExpressionParser
