// Tokens holding byte 0s, and tokens longer than any buffer, come out as one
// token each with the same value and location as any other token.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "parser.hh"
#include "scanner.h"
#include "testhost.h"

namespace {

using Token = ExpressionParser::Parser::token;

std::string visible(const std::string& text) {
    std::string shown;
    for (const char c : text) shown += c == '\0' ? std::string("\\0") : std::string(1, c);
    return shown;
}

std::string describe(int code, ExpressionParser::Parser::semantic_type& value, const ExpressionParser::location& where) {
    std::ostringstream text;
    if (code == Token::STRING || code == Token::TEXTLITERAL || code == Token::INPUT) {
        text << (code == Token::STRING ? "name[" : code == Token::INPUT ? "input[" : "text[") << visible(*value.stringValue)
             << "]";
        delete value.stringValue;
    } else if (code == Token::INTEGER) {
        text << "int[" << value.integerValue << "]";
    } else if (code == Token::EOL) {
        text << "eol";
    } else if (code == 0) {
        text << "eof";
    } else {
        text << "'" << static_cast<char>(code) << "'";
    }
    text << "@" << where;
    return text.str();
}

// The first seven tokens, read from a stream or in place as the driver reads.
std::string scan(const std::string& input, bool inPlace) {
    std::istringstream stream(inPlace ? std::string() : input);
    ExpressionParser::Scanner scanner(&stream, nullptr);
    if (inPlace) scanner.vSetText("", input);
    scanner.yyrestart(stream);
    ExpressionParser::location where;
    std::string tokens;
    for (int i = 0; i < 7; ++i) {
        ExpressionParser::Parser::semantic_type value;
        const int code = scanner.lex(&value, &where);
        tokens += (i ? " " : "") + describe(code, value, where);
    }
    return tokens;
}

struct ByteZeroCase {
    std::string input;
    const char* tokens;
};

const ByteZeroCase kByteZero[] = {
    {std::string("\"a\0b\" x", 7), "text[a\\0b]@1.1-5 name[x]@1.7 eof@1.8 eof@1.8 eof@1.8 eof@1.8 eof@1.8"},
    // A quote never closed is a token of its own, and what follows it is scanned as usual.
    {std::string("\"a\0b", 4), "'\"'@1.1 name[a]@1.2 eof@1.3 name[b]@1.4 eof@1.5 eof@1.5 eof@1.5"},
    {std::string("x\"\0\n1", 5), "name[x]@1.1 '\"'@1.2 eof@1.3 eol@1.4-2.0 int[1]@2.1 eof@2.2 eof@2.2"},
    {std::string("INPUT(\"a\0b\")+1", 14), "input[a\\0b]@1.1-12 '+'@1.13 int[1]@1.14 eof@1.15 eof@1.15 eof@1.15 eof@1.15"},
    // Without its ")" an INPUT call is a name, "(" and a quoted text.
    {std::string("input(\"a\0b\"x", 12),
     "name[input]@1.1-5 '('@1.6 text[a\\0b]@1.7-11 name[x]@1.12 eof@1.13 eof@1.13 eof@1.13"},
    {std::string("INPUT(\"a\0b", 10), "name[INPUT]@1.1-5 '('@1.6 '\"'@1.7 name[a]@1.8 eof@1.9 name[b]@1.10 eof@1.11"},
    {std::string("\"\0\0\"\"\0\"", 7), "text[\\0\\0]@1.1-4 text[\\0]@1.5-7 eof@1.8 eof@1.8 eof@1.8 eof@1.8 eof@1.8"},
    {std::string("\"\0\"x\"\0", 6), "text[\\0]@1.1-3 name[x]@1.4 '\"'@1.5 eof@1.6 eof@1.7 eof@1.7 eof@1.7"},
};

TEST(LongTokens, ByteZeroInsideTokens) {
    for (const ByteZeroCase& c : kByteZero) {
        SCOPED_TRACE(visible(c.input));
        EXPECT_EQ(scan(c.input, false), c.tokens);
        EXPECT_EQ(scan(c.input, true), c.tokens);
    }
}

// A parse that stopped with part of a split INPUT call unread leaves nothing to the next formula.
TEST(LongTokens, NextFormulaAfterAnAbandonedOne) {
    TestHost host;
    host.setNumber(std::string("a\0b", 3), 4.0);
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    EXPECT_EQ(driver.poParseExpression(std::string("=INPUT(\"a\0b\"x", 13)), nullptr);
    EXPECT_EQ(driver.oGetErrorMsg(), "1.7: syntax error, unexpected '('");
    std::unique_ptr<ASTNode> root(driver.poParseExpression(std::string("=INPUT(\"a\0b\")*2", 15)));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->f64Evaluate(), 8.0);
}

struct LongCase {
    const char* what;
    std::string formula;
    std::uint32_t type;
    std::size_t textSize;
};

TEST(LongTokens, TenMegabyteTokensParse) {
    const std::size_t size = 10000000;
    const LongCase cases[] = {
        {"literal", "=\"" + std::string(size, 'x') + "\"", ExprString, size},
        {"byte 0 literal", "=\"" + std::string(size, '\0') + "\"", ExprString, size},
        {"blanks", "=" + std::string(size, ' ') + "1", ExprNumber, 1},
        {"name", "=" + std::string(size, 'a'), ExprNoType, 0},
    };
    ExpressionParser::ParserDriver driver;
    for (const LongCase& c : cases) {
        SCOPED_TRACE(c.what);
        std::unique_ptr<ASTNode> root(driver.poParseExpression(c.formula));
        ASSERT_TRUE(root);
        EXPECT_EQ(root->exprType(), c.type);
        if (c.type != ExprNoType) {
            EXPECT_EQ(root->stringEvaluate().size(), c.textSize);
        }
    }
}

}  // namespace
