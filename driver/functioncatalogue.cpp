#include "functioncatalogue.h"

namespace ExpressionParser {
namespace {

using R = FunctionResult;
using K = ArgumentKind;
constexpr std::uint32_t kAny = FunctionCatalogue::kUnbounded;

std::vector<FunctionEntry> buildCatalogue() {
    return {
        {"SIN", "SIN(angle)", 1, 1, false, R::Number, "Sine of an angle in radians.",
         {{"angle", K::Number, false, false, "An angle in radians."}}},
        {"COS", "COS(angle)", 1, 1, false, R::Number, "Cosine of an angle in radians.",
         {{"angle", K::Number, false, false, "An angle in radians."}}},
        {"TAN", "TAN(angle)", 1, 1, false, R::Number, "Tangent of an angle in radians.",
         {{"angle", K::Number, false, false, "An angle in radians."}}},
        {"ASIN", "ASIN(value)", 1, 1, false, R::Number, "Arcsine in radians.",
         {{"value", K::Number, false, false, "A number from -1 to 1."}}},
        {"ACOS", "ACOS(value)", 1, 1, false, R::Number, "Arccosine in radians.",
         {{"value", K::Number, false, false, "A number from -1 to 1."}}},
        {"ATAN", "ATAN(value)", 1, 1, false, R::Number, "Arctangent in radians.",
         {{"value", K::Number, false, false, "Any number."}}},
        {"ATAN2", "ATAN2(x; y)", 2, 2, false, R::Number,
         "Angle in radians of the point (x, y) from the x axis, atan2(y, x): the quadrant follows both signs.",
         {{"x", K::Number, false, false, "The abscissa: the point's x coordinate."},
          {"y", K::Number, false, false, "The ordinate: the point's y coordinate."}}},
        {"MAX", "MAX(value; ...)", 1, kAny, true, R::Number, "Largest of the values.",
         {{"value", K::Range, false, true, "A number or a range of cells."}}},
        {"MIN", "MIN(value; ...)", 1, kAny, true, R::Number, "Smallest of the values.",
         {{"value", K::Range, false, true, "A number or a range of cells."}}},
        {"SUM", "SUM(value; ...)", 1, kAny, true, R::FromArguments,
         "Sum of the values; joins them as text when one of them is a text.",
         {{"value", K::Range, false, true, "A number, a text or a range of cells."}}},
        {"AND", "AND(value; ...)", 1, kAny, true, R::Number, "1 if every value is non-zero, else 0.",
         {{"value", K::Range, false, true, "A number or a range of cells; non-zero is true."}}},
        {"OR", "OR(value; ...)", 1, kAny, true, R::Number, "1 if any value is non-zero, else 0.",
         {{"value", K::Range, false, true, "A number or a range of cells; non-zero is true."}}},
        {"NOT", "NOT(value)", 1, 1, false, R::Number, "1 if the value is 0, else 0.",
         {{"value", K::Number, false, false, "Non-zero is true."}}},
        {"SQRT", "SQRT(value)", 1, 1, false, R::Number, "Square root.",
         {{"value", K::Number, false, false, "A number from 0."}}},
        {"LN", "LN(value)", 1, 1, false, R::Number, "Natural logarithm.",
         {{"value", K::Number, false, false, "A number above 0."}}},
        {"LOG", "LOG(value; base)", 1, 2, false, R::Number, "Logarithm to the base, 10 when no base is given.",
         {{"value", K::Number, false, false, "A number above 0."},
          {"base", K::Number, true, false, "The base; 10 when left out."}}},
        {"IF", "IF(condition; then; else)", 1, 3, false, R::FromArguments,
         "The then-value if the condition is non-zero, else the else-value.",
         {{"condition", K::Number, false, false, "Non-zero is true."},
          {"then", K::Any, true, false, "The result when the condition is true."},
          {"else", K::Any, true, false, "The result when the condition is false."}}},
        {"PI", "PI()", 0, 0, false, R::Number, "The number pi.",
         {}},
        {"ISERROR", "ISERROR(value)", 1, 1, false, R::Number, "1 if evaluating the value meets an error, else 0.",
         {{"value", K::Any, false, false, "Any value; its evaluation is checked for an error."}}},
        {"TEXT", "TEXT(value; format)", 2, 2, false, R::Text, "The number written by a format text such as \"0.00\".",
         {{"value", K::Number, false, false, "The number to write."},
          {"format", K::Text, false, false, "A format text such as \"0.00\"."}}},
        {"LEFT", "LEFT(text; count)", 2, 2, false, R::Text, "The first count characters of a text.",
         {{"text", K::Text, false, false, "The text to take characters from."},
          {"count", K::Number, false, false, "How many characters."}}},
        {"RIGHT", "RIGHT(text; count)", 2, 2, false, R::Text, "The last count characters of a text.",
         {{"text", K::Text, false, false, "The text to take characters from."},
          {"count", K::Number, false, false, "How many characters."}}},
        {"DEC2BIN", "DEC2BIN(number)", 1, 1, false, R::Text, "Binary digits of a whole number.",
         {{"number", K::Number, false, false, "A whole number."}}},
        {"BIN2DEC", "BIN2DEC(text)", 1, 1, false, R::Number, "The number that a text of binary digits writes.",
         {{"text", K::Text, false, false, "A text of binary digits."}}},
        {"DEC2HEX", "DEC2HEX(number)", 1, 1, false, R::Text, "Hexadecimal digits of a whole number.",
         {{"number", K::Number, false, false, "A whole number."}}},
        {"HEX2DEC", "HEX2DEC(text)", 1, 1, false, R::Number, "The number that a text of hexadecimal digits writes.",
         {{"text", K::Text, false, false, "A text of hexadecimal digits."}}},
        {"BIN2HEX", "BIN2HEX(text)", 1, 1, false, R::Text, "Hexadecimal digits of a text of binary digits.",
         {{"text", K::Text, false, false, "A text of binary digits."}}},
        {"HEX2BIN", "HEX2BIN(text)", 1, 1, false, R::Text, "Binary digits of a text of hexadecimal digits.",
         {{"text", K::Text, false, false, "A text of hexadecimal digits."}}},
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

std::string FunctionCatalogue::oGetArgumentKindName(ArgumentKind kind) {
    switch (kind) {
        case ArgumentKind::Number: return "number";
        case ArgumentKind::Text: return "text";
        case ArgumentKind::Range: return "range";
        case ArgumentKind::Any: return "any";
    }
    return "any";
}

}  // namespace ExpressionParser
