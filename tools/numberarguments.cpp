#include "numberarguments.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "errors.h"
#include "spreadsheethelper.h"

namespace cellformula::cli {

namespace {

// Six letters reach column 321272405 ("ZZZZZZ"), the largest the column
// functions handle exactly.
constexpr std::size_t kMaxColumnLetters = 6;

bool allDigits(const std::string& text) {
    if (text.empty()) return false;
    for (const char c : text) {
        if (std::isdigit(static_cast<unsigned char>(c)) == 0) return false;
    }
    return true;
}

bool allLetters(const std::string& text) {
    if (text.empty()) return false;
    for (const char c : text) {
        if (std::isalpha(static_cast<unsigned char>(c)) == 0) return false;
    }
    return true;
}

}  // namespace

int readIntArgument(const std::string& text, const std::string& what) {
    const std::size_t digitsStart = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    if (!allDigits(text.substr(digitsStart))) {
        throw UsageError(what + " must be a whole number, got \"" + text + "\"");
    }
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    if (errno == ERANGE || value < INT_MIN || value > INT_MAX) {
        throw UsageError(what + " is out of range: " + text);
    }
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

}  // namespace cellformula::cli
