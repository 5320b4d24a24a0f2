#include "csvreader.h"

#include <utility>

#include "errors.h"

namespace cellformula::cli {

namespace {
constexpr int kEnd = std::char_traits<char>::eof();
}

CsvReader::CsvReader(std::istream& in, std::string sourceName)
    : in_(in), sourceName_(std::move(sourceName)) {}

bool CsvReader::nextRecord(std::vector<std::string>& fields) {
    fields.clear();
    if (in_.peek() == kEnd) return false;
    for (;;) {
        fields.push_back(readField());
        const int separator = in_.get();
        if (separator == ',') continue;
        if (separator == '\n') ++line_;
        return true;
    }
}

std::string CsvReader::readField() {
    return in_.peek() == '"' ? readQuotedField() : readPlainField();
}

std::string CsvReader::readQuotedField() {
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
    if (next != ',' && next != '\n' && next != kEnd) {
        fail("unexpected character after a closing quote", line_);
    }
    return field;
}

std::string CsvReader::readPlainField() {
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

void CsvReader::fail(const std::string& problem, long line) const {
    throw InputError(sourceName_ + ":" + std::to_string(line) + ": " + problem);
}

}  // namespace cellformula::cli
