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
    TokenReader(const TokenReader&) = delete;
    TokenReader& operator=(const TokenReader&) = delete;

    // The next token; false once the whole text has been read. A byte 0 is a
    // token of its own (the parser's end of file), not the end of the text.
    bool next(ScannedToken& token);

private:
    const std::string& text_;
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
