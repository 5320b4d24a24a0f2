%{
/* Token rules of the formula language. Keywords are all capitals or all
   small letters; everything the grammar has no use for comes out as a
   single byte, which the parser reports as an invalid token. */
#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
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

/* Each refill takes all the room the buffer has, so a long token is moved and
   matched again only when the buffer doubles, not after every few kilobytes. */
#define YY_READ_BUF_SIZE INT_MAX

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

// What strtod makes of digits with a point under the classic locale, whatever
// locale the host has set: from_chars, with strtod's infinity and zero where
// the value does not fit a double.
double decimalValue(const char* text, std::size_t length) {
    double value = 0.0;
    const std::from_chars_result read = std::from_chars(text, text + length, value);
    if (read.ec != std::errc::result_out_of_range) return value;
    // Only a value below 1, whose digits before the point are all zeros, can underflow.
    const char* const point = std::find(text, text + length, '.');
    const bool belowOne = std::all_of(text, point, [](char digit) { return digit == '0'; });
    return belowOne ? 0.0 : HUGE_VAL;
}

}  // namespace
%}

%option c++
%option prefix="Expression"
%option noyywrap nounput noinput
%option debug
%option batch
%option full 8bit

/* The rest of a quoted text, or of an INPUT call's name, after a byte 0: the
   engine matches a token again from its start at every byte 0 in it, so such
   a token is read in pieces that hold a byte 0 only at their end or alone. */
%x TEXTBODY INPUTBODY

%%

%{
    if (!pending_.empty()) return nextPending(yylval, yylloc);
    stepLocation(yylloc);
%}

[0-9]+              {
                        // Keep the low 32 bits of whatever strtol makes of the digits.
                        const long value = keepValues_ ? digitsValue(yytext, static_cast<std::size_t>(yyleng)) : 0;
                        yylval->integerValue = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
                        return token::INTEGER;
                    }
[0-9]+"."[0-9]*     { yylval->doubleValue = keepValues_ ? decimalValue(yytext, static_cast<std::size_t>(yyleng)) : 0.0; return token::DOUBLE; }
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
("INPUT"|"input")"(\""[^"\0]+"\")" {
                        yylval->stringValue = keptValue(yytext + 7, static_cast<std::size_t>(yyleng) - 9);
                        return token::INPUT;
                    }
[a-zA-Z$?][a-zA-Z0-9$?,_.]* {
                        yylval->stringValue = keptValue(yytext, static_cast<std::size_t>(yyleng));
                        return token::STRING;
                    }
\"[^"\0]*\"         {
                        yylval->stringValue = keptValue(yytext + 1, static_cast<std::size_t>(yyleng) - 2);
                        return token::TEXTLITERAL;
                    }
("INPUT"|"input")"(\""[^"\0]*\0 { body_.assign(yytext, static_cast<std::size_t>(yyleng)); BEGIN(INPUTBODY); }
\"[^"\0]*\0        { body_.assign(yytext, static_cast<std::size_t>(yyleng)); BEGIN(TEXTBODY); }
<TEXTBODY,INPUTBODY>[^"\0]+|\0 { body_.append(yytext, static_cast<std::size_t>(yyleng)); }
<TEXTBODY>\"        {
                        BEGIN(INITIAL);
                        yylval->stringValue = keptValue(body_.data() + 1, body_.size() - 1);
                        return token::TEXTLITERAL;
                    }
<INPUTBODY>\"\)     {
                        BEGIN(INITIAL);
                        yylval->stringValue = keptValue(body_.data() + 7, body_.size() - 7);
                        return token::INPUT;
                    }
<INPUTBODY>\"       {
                        // No ")" after the name: the word is a name, followed
                        // by "(" and the quoted text, as the one-piece rules read it.
                        BEGIN(INITIAL);
                        location open = *yylloc;
                        open.begin.columns(5);
                        open.end = open.begin;
                        open.columns(1);
                        location quoted = *yylloc;
                        quoted.begin = open.end;
                        pending_.push_back(PendingToken{'(', std::string(), open});
                        pending_.push_back(PendingToken{token::TEXTLITERAL, body_.substr(7), quoted});
                        return returnWord(yylval, yylloc);
                    }
<TEXTBODY><<EOF>>   {
                        // Never closed: the quote alone is the token and what followed it is scanned again.
                        BEGIN(INITIAL);
                        replay(1);
                        yylloc->end = yylloc->begin;
                        yylloc->columns(1);
                        return '"';
                    }
<INPUTBODY><<EOF>>  {
                        // Never closed: the word is a name, and "(" and the quote are scanned again.
                        BEGIN(INITIAL);
                        replay(5);
                        return returnWord(yylval, yylloc);
                    }
[ \t\r]+            { stepLocation(yylloc); }
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
    // A parse abandoned part way may leave tokens or bytes of its own behind.
    BEGIN(INITIAL);
    pending_.clear();
    replay_.clear();
    replayAt_ = 0;
    prefix_ = prefix;
    prefixLeft_ = std::strlen(prefix);
    text_ = text.data();
    textLeft_ = text.size();
}

int ExpressionParser::Scanner::nextPending(Parser::semantic_type* value, location* where) {
    PendingToken next = std::move(pending_.front());
    pending_.pop_front();
    *where = next.where;
    if (next.code == token::TEXTLITERAL) value->stringValue = keptValue(next.text.data(), next.text.size());
    return next.code;
}

int ExpressionParser::Scanner::returnWord(Parser::semantic_type* value, location* where) {
    where->end = where->begin;
    where->columns(5);
    value->stringValue = keptValue(body_.data(), 5);
    return token::STRING;
}

void ExpressionParser::Scanner::replay(std::size_t from) {
    replay_.assign(body_, from, std::string::npos);
    replayAt_ = 0;
}

int ExpressionParser::Scanner::LexerInput(char* buffer, int capacity) {
    std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    // The input has ended by the time anything is replayed, so it comes first.
    if (replayAt_ < replay_.size()) {
        const std::size_t fromReplay = std::min(replay_.size() - replayAt_, room);
        std::memcpy(buffer, replay_.data() + replayAt_, fromReplay);
        replayAt_ += fromReplay;
        return static_cast<int>(fromReplay);
    }
    // A scanner given a stream and no text reads the stream as usual.
    if (text_ == nullptr) return ExpressionFlexLexer::LexerInput(buffer, capacity);
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
