#include "cellvalue.h"

#include <cctype>
#include <cstdlib>
#include <utility>

namespace cellformula::cli {

namespace {

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

// Advances over digits and tells how many there were.
std::size_t skipDigits(const std::string& text, std::size_t& pos) {
    const std::size_t start = pos;
    while (pos < text.size() && isDigit(text[pos])) ++pos;
    return pos - start;
}

// Whether the text is an optional sign, digits with an optional point, and an
// optional exponent.
bool isDecimalSyntax(const std::string& body) {
    std::size_t pos = 0;
    if (pos < body.size() && (body[pos] == '+' || body[pos] == '-')) ++pos;
    std::size_t mantissaDigits = skipDigits(body, pos);
    if (pos < body.size() && body[pos] == '.') {
        ++pos;
        mantissaDigits += skipDigits(body, pos);
    }
    if (mantissaDigits == 0) return false;
    if (pos < body.size() && (body[pos] == 'e' || body[pos] == 'E')) {
        ++pos;
        if (pos < body.size() && (body[pos] == '+' || body[pos] == '-')) ++pos;
        if (skipDigits(body, pos) == 0) return false;
    }
    return pos == body.size();
}

}  // namespace

CellValue CellValue::ofNumber(double value) {
    CellValue cell;
    cell.kind = Kind::Number;
    cell.number = value;
    return cell;
}

CellValue CellValue::ofText(std::string value) {
    CellValue cell;
    cell.kind = Kind::Text;
    cell.text = std::move(value);
    return cell;
}

std::optional<double> readDecimalNumber(const std::string& text) {
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && isBlank(text[first])) ++first;
    while (last > first && isBlank(text[last - 1])) --last;
    const std::string body = text.substr(first, last - first);
    if (!isDecimalSyntax(body)) return std::nullopt;
    // strtod reads exactly what the check accepted; values beyond the double
    // range come back as an infinity or zero.
    return std::strtod(body.c_str(), nullptr);
}

std::optional<CellValue> readAssignedValue(const std::string& text) {
    if (text.empty()) return CellValue::empty();
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        return CellValue::ofText(text.substr(1, text.size() - 2));
    }
    if (const std::optional<double> number = readDecimalNumber(text)) {
        return CellValue::ofNumber(*number);
    }
    return std::nullopt;
}

CellValue readSheetField(const std::string& field) {
    if (field.empty()) return CellValue::empty();
    if (const std::optional<double> number = readDecimalNumber(field)) {
        return CellValue::ofNumber(*number);
    }
    return CellValue::ofText(field);
}

}  // namespace cellformula::cli
