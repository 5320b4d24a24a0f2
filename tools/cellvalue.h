#ifndef CELLFORMULA_TOOLS_CELLVALUE_H
#define CELLFORMULA_TOOLS_CELLVALUE_H

#include <optional>
#include <string>

namespace cellformula::cli {

// What one cell holds: nothing, a number or a text.
struct CellValue {
    enum class Kind { Empty, Number, Text };

    Kind kind = Kind::Empty;
    double number = 0.0;
    std::string text;

    static CellValue empty() { return CellValue(); }
    static CellValue ofNumber(double value);
    static CellValue ofText(std::string value);
};

// Reads a plain decimal number ("42", "-3.5", ".5", "1e3"), allowing blanks
// around it. Hexadecimal, "inf" and "nan" are refused, so that such words
// in a sheet stay texts.
std::optional<double> readDecimalNumber(const std::string& text);

// The value of a --cell assignment: empty, a text in double quotes, or a
// number; nothing when it is none of these.
std::optional<CellValue> readAssignedValue(const std::string& text);

// The value of a CSV field: empty, a number, or else the field as text.
CellValue readSheetField(const std::string& field);

}  // namespace cellformula::cli

#endif
