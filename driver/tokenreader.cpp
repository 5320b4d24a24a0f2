#include "tokenreader.h"

namespace ExpressionParser {

TokenReader::TokenReader(const std::string& text) : text_(&text), scanner_(&unusedStream_, nullptr) {
    scanner_.vKeepValues(false);
    std::memset(symbolOfCode_, kNotAsked, sizeof symbolOfCode_);
    restart(text);
}

void TokenReader::restart(const std::string& text) {
    text_ = &text;
    scanner_.vSetText("", text);
    scanner_.yyrestart(unusedStream_);
    where_ = location();
    lineStart_ = 0;
    finished_ = false;
}

signed char TokenReader::askParser(int code) {
    return static_cast<signed char>(Parser::by_kind(static_cast<Parser::token_kind_type>(code)).kind());
}

}  // namespace ExpressionParser
