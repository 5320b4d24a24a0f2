#include "tokenreader.h"

namespace ExpressionParser {

TokenReader::TokenReader(const std::string& text) : text_(text), scanner_(&unusedStream_, nullptr) {
    scanner_.vSetText("", text_);
    scanner_.vKeepValues(false);
    scanner_.yyrestart(unusedStream_);
    std::memset(symbolOfCode_, kNotAsked, sizeof symbolOfCode_);
}

bool TokenReader::next(ScannedToken& token) {
    if (finished_) return false;
    value_.stringValue = nullptr;
    const int code = scanner_.lex(&value_, &where_);
    Parser::symbol_kind_type symbol = Parser::symbol_kind::S_YYUNDEF;
    if (code >= 0 && code < kCodes) {
        signed char& known = symbolOfCode_[code];
        if (known == kNotAsked) known = static_cast<signed char>(Parser::by_kind(static_cast<Parser::token_kind_type>(code)).kind());
        symbol = static_cast<Parser::symbol_kind_type>(known);
    }
    const std::size_t begin = lineStart_ + static_cast<std::size_t>(where_.begin.column - 1);
    if (code == 0 && begin >= text_.size()) {
        finished_ = true;
        return false;
    }
    token.symbol = symbol;
    token.begin = begin;
    // The location, not the last match, spans the token: the scanner may build
    // one token from several matches. Only a newline token ends on the next line.
    token.end = where_.end.line == where_.begin.line
                    ? lineStart_ + static_cast<std::size_t>(where_.end.column - 1)
                    : begin + 1;
    if (symbol == Parser::symbol_kind::S_EOL) lineStart_ = token.end;
    return true;
}

}  // namespace ExpressionParser
