#include "syntaxerrorreader.h"

#include <algorithm>

#include "spreadsheethelper.h"
#include "tokenreader.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

// The parser's verbose message: the unexpected name, then up to four
// expected names; no display name contains ", " or " or ".
const std::string kUnexpected = "syntax error, unexpected ";
const std::string kExpecting = ", expecting ";
const std::string kOr = " or ";
const std::string kInvalidCellName = "Invalid cell name: \"";

std::vector<std::string> splitAtOr(const std::string& names) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t at = names.find(kOr); at != std::string::npos; at = names.find(kOr, from)) {
        parts.push_back(names.substr(from, at - from));
        from = at + kOr.size();
    }
    parts.push_back(names.substr(from));
    return parts;
}

// Where line `line` starts in `text`: newline tokens end lines, newlines
// inside quoted texts do not. Reads no further than that line.
std::size_t lineStart(const std::string& text, int line) {
    if (line <= 1) return 0;
    TokenReader reader(text);
    ScannedToken token{};
    int lineOfNext = 1;
    while (reader.next(token)) {
        if (token.symbol != Symbol::S_EOL) continue;
        if (++lineOfNext == line) return token.end;
    }
    return text.size();
}

bool isCellName(const std::string& text, const ScannedToken& token) {
    int column = 0;
    int row = 0;
    return SpreadSheetHelper::s8CreateColumnLine(text.substr(token.begin, token.end - token.begin), column, row) == 0;
}

}  // namespace

SyntaxErrorReader::SyntaxErrorReader(const std::string& parsed, std::size_t prefixLength)
    : parsed_(parsed), prefixLength_(prefixLength) {}

SourcePosition SyntaxErrorReader::positionOf(const position& where) const {
    const std::size_t start = lineStart(parsed_, where.line);
    const std::size_t inParsed = std::min(start + static_cast<std::size_t>(std::max(where.column, 1) - 1), parsed_.size());
    const std::size_t offset = inParsed > prefixLength_ ? inParsed - prefixLength_ : 0;
    return SourcePosition{where.line, where.column, offset, 0, 0};
}

SyntaxError SyntaxErrorReader::fromParserMessage(const location& where, const std::string& message) const {
    SyntaxError error{positionOf(where.begin), positionOf(where.end), "", {}, "", false, ""};
    if (message.compare(0, kUnexpected.size(), kUnexpected) != 0) return error;
    const std::size_t names = kUnexpected.size();
    const std::size_t expecting = message.find(kExpecting, names);
    error.oUnexpected = message.substr(names, expecting == std::string::npos ? std::string::npos : expecting - names);
    if (expecting != std::string::npos) error.oExpected = splitAtOr(message.substr(expecting + kExpecting.size()));
    return error;
}

bool SyntaxErrorReader::fromRangeMessage(const std::string& message, SyntaxError& error) const {
    if (message.size() <= kInvalidCellName.size() ||
        message.compare(0, kInvalidCellName.size(), kInvalidCellName) != 0 || message.back() != '"') {
        return false;
    }
    error = SyntaxError{};
    error.oInvalidCellName = message.substr(kInvalidCellName.size(), message.size() - kInvalidCellName.size() - 1);

    // Ranges are expanded in text order and the first bad one ends the parse,
    // so the culprit is the first name pair with a corner that is no cell.
    TokenReader reader(parsed_);
    ScannedToken previous[2]{};
    ScannedToken token{};
    int seen = 0;
    int line = 1;
    std::size_t start = 0;
    while (reader.next(token)) {
        if (seen >= 2 && token.symbol == Symbol::S_STRING && previous[1].symbol == Symbol::S_45_ &&
            previous[0].symbol == Symbol::S_STRING) {
            const bool firstIsBad = !isCellName(parsed_, previous[0]);
            if (firstIsBad || !isCellName(parsed_, token)) {
                const ScannedToken& bad = firstIsBad ? previous[0] : token;
                const auto column = [&](std::size_t offset) { return static_cast<std::int32_t>(offset - start + 1); };
                const auto offset = [&](std::size_t at) { return at > prefixLength_ ? at - prefixLength_ : 0; };
                error.oBegin = SourcePosition{line, column(bad.begin), offset(bad.begin), 0, 0};
                error.oEnd = SourcePosition{line, column(bad.end), offset(bad.end), 0, 0};
                return true;
            }
            // A good pair was a range; its second corner starts no new pair.
            seen = -1;
        }
        if (token.symbol == Symbol::S_EOL) {
            ++line;
            start = token.end;
        }
        previous[0] = previous[1];
        previous[1] = token;
        ++seen;
    }
    return true;
}

}  // namespace ExpressionParser
