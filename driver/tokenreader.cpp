#include "tokenreader.h"

namespace ExpressionParser {

TokenReader::TokenReader(const std::string& text) : text_(text), scanner_(&unusedStream_, nullptr) {
    scanner_.vSetText("", text_);
    scanner_.vKeepValues(false);
    scanner_.yyrestart(unusedStream_);
    std::memset(symbolOfCode_, kNotAsked, sizeof symbolOfCode_);
}

signed char TokenReader::askParser(int code) {
    return static_cast<signed char>(Parser::by_kind(static_cast<Parser::token_kind_type>(code)).kind());
}

}  // namespace ExpressionParser
