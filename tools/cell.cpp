// The cell subcommand, and the reading of column and row arguments that the
// rewrite subcommand shares.
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ostream>

#include <cellformula/spreadsheethelper.h>

#include "cli.h"

namespace cellformula::cli {

namespace {

// Six letters reach column 321272405 ("ZZZZZZ"), the largest the column
// functions handle exactly.
constexpr std::size_t kMaxColumnLetters = 6;

template <typename Test>
bool every(const std::string& text, Test test) {
    if (text.empty()) return false;
    for (const char c : text) {
        if (test(static_cast<unsigned char>(c)) == 0) return false;
    }
    return true;
}

bool allDigits(const std::string& text) { return every(text, [](unsigned char c) { return std::isdigit(c); }); }
bool allLetters(const std::string& text) { return every(text, [](unsigned char c) { return std::isalpha(c); }); }

int describeName(const std::string& name, Streams io) {
    int column = 0;
    int row = 0;
    // Column letters or row digits beyond what the indices hold do not name a cell either.
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0 || column < 0 || row < 0) {
        io.err << "not a cell name: " << name << '\n';
        return 1;
    }
    io.out << column << '\t' << row << '\t' << SpreadSheetHelper::oGetLetterByIdx(column) << '\n';
    return 0;
}

int nameCell(const std::string& columnText, const std::string& rowText, Streams io) {
    const int column = readColumnArgument(columnText);
    const int row = readIndexArgument(rowText, "row index");
    if (row == INT_MAX) throw UsageError("row index is out of range: " + rowText);
    io.out << SpreadSheetHelper::oGetLetterByIdx(column) << row + 1 << '\n';
    return 0;
}

}  // namespace

int readIntArgument(const std::string& text, const std::string& what) {
    const std::size_t digitsStart = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    if (!allDigits(text.substr(digitsStart))) throw UsageError(what + " must be a whole number, got \"" + text + "\"");
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    if (errno == ERANGE || value < INT_MIN || value > INT_MAX) throw UsageError(what + " is out of range: " + text);
    return static_cast<int>(value);
}

int readIndexArgument(const std::string& text, const std::string& what) {
    const int value = readIntArgument(text, what);
    if (value < 0) throw UsageError(what + " must not be negative, got " + text);
    return value;
}

int readColumnArgument(const std::string& text) {
    if (allDigits(text)) return readIndexArgument(text, "column index");
    if (!allLetters(text) || text.size() > kMaxColumnLetters) {
        throw UsageError("column must be letters (at most six) or an index, got \"" + text + "\"");
    }
    std::string letters;
    for (const char c : text) letters += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return static_cast<int>(SpreadSheetHelper::u32GetIdxByLetter(letters));
}

int runCell(const std::vector<std::string>& args, Streams io) {
    if (args.size() == 1) return describeName(args[0], io);
    if (args.size() == 2) return nameCell(args[0], args[1], io);
    throw UsageError("cell needs a cell NAME, or a column and a row index");
}

}  // namespace cellformula::cli
