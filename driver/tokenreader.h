#ifndef CELLFORMULA_TOKENREADER_H
#define CELLFORMULA_TOKENREADER_H

#include <cstddef>
#include <cstring>
#include <sstream>
#include <string>

#include "location.hh"
#include "parser.hh"
#include "scanner.h"

namespace ExpressionParser {

// One token as the parser would receive it, located by byte offsets.
struct ScannedToken {
    Parser::symbol_kind_type symbol;
    std::size_t begin;
    std::size_t end;
};

// Runs the formula scanner over a text on its own scanner instance, so the
// token rules stay written once, and turns token locations into byte offsets.
// Columns count bytes and lines advance only at newline tokens, so an offset
// is the start of the token's line plus its column.
class TokenReader {
public:
    // `text` must outlive the reader.
    explicit TokenReader(const std::string& text);
    // Starts over on another text, which must outlive the reading; the
    // scanner and its buffer are reused, so many short texts cost no setup each.
    void restart(const std::string& text);
    TokenReader(const TokenReader&) = delete;
    TokenReader& operator=(const TokenReader&) = delete;

    // The next token; false once the whole text has been read. A byte 0 is a
    // token of its own (the parser's end of file), not the end of the text.
    // Inline, so that a caller's loop over the tokens holds no second call per token.
    bool next(ScannedToken& token) {
        if (finished_) return false;
        const int code = scanner_.lex(&value_, &where_);
        const std::size_t begin = lineStart_ + static_cast<std::size_t>(where_.begin.column - 1);
        if (code == 0 && begin >= text_->size()) {
            finished_ = true;
            return false;
        }
        token.symbol = symbolOf(code);
        token.begin = begin;
        // The location, not the last match, spans the token: the scanner may build
        // one token from several matches. Only a newline token ends on the next line.
        token.end = where_.end.line == where_.begin.line
                        ? lineStart_ + static_cast<std::size_t>(where_.end.column - 1)
                        : begin + 1;
        if (code == Parser::token::EOL) lineStart_ = token.end;
        return true;
    }

private:
    Parser::symbol_kind_type symbolOf(int code) {
        if (code < 0 || code >= kCodes) return Parser::symbol_kind::S_YYUNDEF;
        signed char& known = symbolOfCode_[code];
        if (known == kNotAsked) known = askParser(code);
        return static_cast<Parser::symbol_kind_type>(known);
    }
    static signed char askParser(int code);

    const std::string* text_;
    std::istringstream unusedStream_;
    Scanner scanner_;
    Parser::semantic_type value_;
    location where_;
    std::size_t lineStart_ = 0;
    bool finished_ = false;
    // The parser's symbol for each scanner code met so far (the codes are
    // bytes and the named tokens just above them), asked of the parser once.
    static constexpr int kCodes = Parser::token::HEX2BIN + 1;
    static constexpr signed char kNotAsked = -1;
    signed char symbolOfCode_[kCodes];
};

}  // namespace ExpressionParser

#endif
