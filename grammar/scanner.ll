%{
/* Token rules of the formula language. Keywords are all capitals or all
   small letters; everything the grammar has no use for comes out as a
   single byte, which the parser reports as an invalid token. */
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "scanner.h"

#undef YY_DECL
#define YY_DECL int ExpressionParser::Scanner::lex(ExpressionParser::Parser::semantic_type* yylval, \
                                                   ExpressionParser::location* yylloc)

/* Every token first covers its own characters. */
#define YY_USER_ACTION yylloc->columns(static_cast<int>(yyleng));

using token = ExpressionParser::Parser::token;

namespace {

// What strtol makes of a run of decimal digits, without its locale and sign
// handling: the value, or LONG_MAX once the value no longer fits.
long digitsValue(const char* digits, std::size_t count) {
    constexpr unsigned long long kLargest = LONG_MAX;
    unsigned long long value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto digit = static_cast<unsigned long long>(digits[i] - '0');
        if (value > (kLargest - digit) / 10) return LONG_MAX;
        value = value * 10 + digit;
    }
    return static_cast<long>(value);
}

}  // namespace
%}

%option c++
%option prefix="Expression"
%option noyywrap nounput noinput
%option debug
%option batch
%option full 8bit

%%

%{
    yylloc->step();
%}

[0-9]+              {
                        // Keep the low 32 bits of whatever strtol makes of the digits.
                        const long value = digitsValue(yytext, static_cast<std::size_t>(yyleng));
                        yylval->integerValue = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
                        return token::INTEGER;
                    }
[0-9]+"."[0-9]*     { yylval->doubleValue = std::strtod(yytext, nullptr); return token::DOUBLE; }
"SIN"|"sin"         { return token::SIN; }
"COS"|"cos"         { return token::COS; }
"TAN"|"tan"         { return token::TAN; }
"ASIN"|"asin"       { return token::ASIN; }
"ACOS"|"acos"       { return token::ACOS; }
"ATAN"|"atan"       { return token::ATAN; }
"ATAN2"|"atan2"     { return token::ATAN2; }
"MIN"|"min"         { return token::MIN; }
"MAX"|"max"         { return token::MAX; }
"SUM"|"sum"         { return token::SUM; }
"AND"|"and"         { return token::AND; }
"OR"|"or"           { return token::OR; }
"NOT"|"not"         { return token::NOT; }
"SQRT"|"sqrt"       { return token::SQRT; }
"LN"|"ln"           { return token::LN; }
"LOG"|"log"         { return token::LOG; }
"IF"|"if"           { return token::IF; }
"TEXT"|"text"       { return token::TEXT; }
"ISERROR"|"iserror" { return token::ISERROR; }
"PI"|"pi"           { return token::PI; }
"DEC2BIN"|"dec2bin" { return token::DEC2BIN; }
"BIN2DEC"|"bin2dec" { return token::BIN2DEC; }
"DEC2HEX"|"dec2hex" { return token::DEC2HEX; }
"HEX2DEC"|"hex2dec" { return token::HEX2DEC; }
"BIN2HEX"|"bin2hex" { return token::BIN2HEX; }
"HEX2BIN"|"hex2bin" { return token::HEX2BIN; }
"<="                { return token::LE; }
">="                { return token::GE; }
"LEFT"|"left"       { return token::LEFT; }
"RIGHT"|"right"     { return token::RIGHT; }
("INPUT"|"input")"(\""[^"]+"\")" {
                        yylval->stringValue = new std::string(yytext + 7, static_cast<std::size_t>(yyleng) - 9);
                        return token::INPUT;
                    }
[a-zA-Z$?][a-zA-Z0-9$?,_.]* {
                        yylval->stringValue = new std::string(yytext, static_cast<std::size_t>(yyleng));
                        return token::STRING;
                    }
\"[^"]*\"           {
                        yylval->stringValue = new std::string(yytext + 1, static_cast<std::size_t>(yyleng) - 2);
                        return token::TEXTLITERAL;
                    }
[ \t\r]+            { yylloc->step(); }
\n                  {
                        // The token spans to the start of the next line; it is
                        // returned without stepping, so it prints as 1.3-2.0.
                        yylloc->lines(1);
                        return token::EOL;
                    }
.                   { return static_cast<unsigned char>(yytext[0]); }

%%

ExpressionParser::Scanner::Scanner(std::istream* in, std::ostream* out)
    : ExpressionFlexLexer(in, out) {}

ExpressionParser::Scanner::~Scanner() = default;

void ExpressionParser::Scanner::vSetDebug(bool enabled) {
    set_debug(enabled ? 1 : 0);
}

void ExpressionParser::Scanner::vSetText(const char* prefix, const std::string& text) {
    prefix_ = prefix;
    prefixLeft_ = std::strlen(prefix);
    text_ = text.data();
    textLeft_ = text.size();
}

int ExpressionParser::Scanner::LexerInput(char* buffer, int capacity) {
    // A scanner given a stream and no text reads the stream as usual.
    if (text_ == nullptr) return ExpressionFlexLexer::LexerInput(buffer, capacity);
    std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    std::size_t copied = 0;
    const std::size_t fromPrefix = std::min(prefixLeft_, room);
    std::memcpy(buffer, prefix_, fromPrefix);
    prefix_ += fromPrefix;
    prefixLeft_ -= fromPrefix;
    copied += fromPrefix;
    room -= fromPrefix;
    const std::size_t fromText = std::min(textLeft_, room);
    if (fromText > 0) std::memcpy(buffer + copied, text_, fromText);
    text_ += fromText;
    textLeft_ -= fromText;
    copied += fromText;
    return static_cast<int>(copied);
}

// The engine's argument-less entry is never used: tokens come from lex().
int ExpressionFlexLexer::yylex() {
    std::cerr << "in ExpressionFlexLexer::yylex() !" << std::endl;
    return 0;
}
