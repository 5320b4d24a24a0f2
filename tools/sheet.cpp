#include "sheet.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include <cellformula/astnode.h>
#include <cellformula/sstringify.h>
#include <cellformula/spreadsheethelper.h>

namespace cellformula::cli {

namespace {

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

std::size_t skipDigits(const std::string& text, std::size_t& pos) {
    const std::size_t start = pos;
    while (pos < text.size() && isDigit(text[pos])) ++pos;
    return pos - start;
}

// An optional sign, digits with an optional point, and an optional exponent.
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

// A plain decimal number with blanks around it allowed; hexadecimal, "inf"
// and "nan" are refused, so that such words in a sheet stay texts.
std::optional<double> readDecimalNumber(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return std::nullopt;
    const std::string body = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
    if (!isDecimalSyntax(body)) return std::nullopt;
    // strtod reads exactly what the check accepted; values beyond the double
    // range come back as an infinity or zero.
    return std::strtod(body.c_str(), nullptr);
}

// "$b$2" and "b2" both become "B2"; a name that is no cell name (or names a
// cell beyond the coordinates' range) is kept as written, since INPUT("...")
// names are free text.
std::string canonicalName(const std::string& name) {
    int column = 0;
    int row = 0;
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0 || column < 0 || row < 0) return name;
    return SpreadSheetHelper::oGetLetterByIdx(column) + std::to_string(row + 1LL);
}

// Reads comma-separated records; fields in double quotes may hold commas,
// line ends and doubled quotes. Errors name the source and the line.
class CsvReader {
public:
    CsvReader(const std::string& content, std::string sourceName)
        : in_(content), sourceName_(std::move(sourceName)) {}

    bool nextRecord(std::vector<std::string>& fields) {
        fields.clear();
        if (in_.peek() == kEnd) return false;
        for (;;) {
            fields.push_back(in_.peek() == '"' ? readQuotedField() : readPlainField());
            const int separator = in_.get();
            if (separator == ',') continue;
            if (separator == '\n') ++line_;
            return true;
        }
    }

private:
    static constexpr int kEnd = std::char_traits<char>::eof();

    std::string readQuotedField() {
        const long startLine = line_;
        in_.get();
        std::string field;
        for (;;) {
            const int c = in_.get();
            if (c == kEnd) fail("unterminated quoted field", startLine);
            if (c == '"') {
                if (in_.peek() != '"') break;
                in_.get();
            } else if (c == '\n') {
                ++line_;
            }
            field += static_cast<char>(c);
        }
        // A CRLF line end after the closing quote leaves only the LF for the caller.
        if (in_.peek() == '\r') {
            in_.get();
            if (in_.peek() != '\n') fail("carriage return after a closing quote", line_);
        }
        const int next = in_.peek();
        if (next != ',' && next != '\n' && next != kEnd) fail("unexpected character after a closing quote", line_);
        return field;
    }

    std::string readPlainField() {
        std::string field;
        for (;;) {
            const int c = in_.peek();
            if (c == kEnd || c == ',' || c == '\n') return field;
            in_.get();
            // The CR of a CRLF line end belongs to the line end, not the field.
            if (c == '\r' && in_.peek() == '\n') return field;
            field += static_cast<char>(c);
        }
    }

    [[noreturn]] void fail(const std::string& problem, long line) const {
        throw InputError(sourceName_ + ":" + std::to_string(line) + ": " + problem);
    }

    std::istringstream in_;
    std::string sourceName_;
    long line_ = 1;
};

// The whole content of a sheet file, or of standard input for "-".
std::string readSheet(const std::string& path, std::istream& in) {
    std::ostringstream content;
    if (path == "-") {
        content << in.rdbuf();
        if (in.bad()) throw InputError("error while reading the sheet from standard input");
        return content.str();
    }
    // Binary mode keeps CR characters, so CRLF lines read alike everywhere.
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError("cannot read sheet " + path + ": " + std::strerror(errno));
    content << file.rdbuf();
    if (file.bad()) throw InputError("error while reading sheet " + path);
    return content.str();
}

}  // namespace

std::optional<double> readSheetNumber(const std::string& field) { return readDecimalNumber(field); }

std::vector<std::vector<std::string>> readCsvRecords(const std::string& path, std::istream& in) {
    std::string content = readSheet(path, in);
    dropByteOrderMark(content);
    CsvReader reader(content, path == "-" ? "<stdin>" : path);
    std::vector<std::vector<std::string>> records;
    std::vector<std::string> fields;
    while (reader.nextRecord(fields)) records.push_back(fields);
    return records;
}

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

VariableRecord CellTable::oGetVariable(const std::string& name) {
    const auto found = cells_.find(canonicalName(name));
    if (found == cells_.end() || found->second.kind == Kind::Empty) {
        return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
    }
    Cell& cell = found->second;
    if (cell.kind == Kind::Text) return VariableRecord{ExprString, nullptr, &cell.text, ErrNone};
    return VariableRecord{ExprNumber, &cell.number, &cell.text, ErrNone};
}

CalculationCollectionBase* CellTable::poClone() {
    return new CellTable(*this);
}

void CellTable::load(const std::vector<TableInput>& inputs, std::istream& in) {
    for (const TableInput& input : inputs) {
        if (input.kind == TableInput::Kind::CellAssignment) {
            assign(input.text);
        } else {
            loadSheet(readSheet(input.text, in), input.text == "-" ? "<stdin>" : input.text);
        }
    }
}

void CellTable::assign(const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw UsageError("--cell expects NAME=VALUE, got \"" + assignment + "\"");
    }
    const std::string value = assignment.substr(equals + 1);
    Cell cell;
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        cell = Cell{Kind::Text, 0.0, value.substr(1, value.size() - 2)};
    } else if (const std::optional<double> number = readDecimalNumber(value)) {
        cell = Cell{Kind::Number, *number, ""};
    } else if (!value.empty()) {
        throw UsageError("--cell " + assignment + ": the value must be a number, a text in double quotes, or empty");
    }
    setCell(assignment.substr(0, equals), cell);
}

void CellTable::loadSheet(const std::string& content, const std::string& sourceName) {
    const bool marked = content.rfind(kByteOrderMark, 0) == 0;
    CsvReader reader(marked ? content.substr(kByteOrderMark.size()) : content, sourceName);
    std::vector<std::string> fields;
    for (long row = 1; reader.nextRecord(fields); ++row) {
        for (std::size_t column = 0; column < fields.size(); ++column) {
            const std::string& field = fields[column];
            Cell cell{field.empty() ? Kind::Empty : Kind::Text, 0.0, field};
            if (const std::optional<double> number = readDecimalNumber(field)) cell = Cell{Kind::Number, *number, ""};
            setCell(SpreadSheetHelper::oGetLetterByIdx(static_cast<int>(column)) + std::to_string(row), cell);
        }
    }
}

void CellTable::setCell(const std::string& name, Cell cell) {
    if (cell.kind == Kind::Number) cell.text = QuandelUtils::sstringify(cell.number);
    cells_[canonicalName(name)] = std::move(cell);
}

}  // namespace cellformula::cli
