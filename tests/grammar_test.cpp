// The formula language as the host meets it: tokens and their locations,
// syntax error messages, tree shapes and outlines, and the traces.
#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "parser.hh"
#include "scanner.h"
#include "testhost.h"

namespace {

using Token = ExpressionParser::Parser::token;

// One token as "kind[value]@location".
std::string describeToken(int code, ExpressionParser::Parser::semantic_type& value,
                          const ExpressionParser::location& where) {
    static const std::map<int, const char*> names = {
        {Token::EOL, "eol"}, {Token::SIN, "SIN"}, {Token::PI, "PI"}, {Token::LE, "LE"},
        {Token::GE, "GE"},   {Token::LEFT, "LEFT"}, {Token::ATAN2, "ATAN2"}, {Token::LOG, "LOG"},
    };
    std::ostringstream text;
    if (code == Token::INTEGER) {
        text << "int[" << value.integerValue << "]";
    } else if (code == Token::DOUBLE) {
        text << "double[" << value.doubleValue << "]";
    } else if (code == Token::STRING || code == Token::TEXTLITERAL || code == Token::INPUT) {
        text << (code == Token::STRING ? "name[" : code == Token::INPUT ? "input[" : "text[") << *value.stringValue << "]";
        delete value.stringValue;
    } else if (code == 0) {
        text << "eof";
    } else if (code < 256) {
        text << "'" << static_cast<char>(code) << "'";
    } else {
        text << names.at(code);
    }
    text << "@" << where;
    return text.str();
}

std::string scan(const std::string& input, int tokens) {
    std::istringstream stream(input);
    ExpressionParser::Scanner scanner(&stream, nullptr);
    ExpressionParser::location where;
    std::string result;
    for (int i = 0; i < tokens; ++i) {
        ExpressionParser::Parser::semantic_type value;
        const int code = scanner.lex(&value, &where);
        result += (i ? " " : "") + describeToken(code, value, where);
    }
    return result;
}

struct TokenCase {
    std::string input;
    int tokens;
    const char* expected;
};

const TokenCase kTokens[] = {
    {"SIN sin Sin SINX", 4, "SIN@1.1-3 SIN@1.5-7 name[Sin]@1.9-11 name[SINX]@1.13-16"},
    {"pi Pi LOG10 OR1", 4, "PI@1.1-2 name[Pi]@1.4-5 name[LOG10]@1.7-11 name[OR1]@1.13-15"},
    {"007 12.50 1.2.3", 5, "int[7]@1.1-3 double[12.5]@1.5-9 double[1.2]@1.11-13 '.'@1.14 int[3]@1.15"},
    {"2147483648 4294967296 1.", 3, "int[-2147483648]@1.1-10 int[0]@1.12-21 double[1]@1.23-24"},
    // Past LONG_MAX the digits saturate there, whose low 32 bits read -1.
    {"9223372036854775807 9223372036854775808 00000000000000000000004294967297", 3,
     "int[-1]@1.1-19 int[-1]@1.21-39 int[1]@1.41-72"},
    {"$A$1:$B$3 A1,B1 a.b", 5, "name[$A$1]@1.1-4 ':'@1.5 name[$B$3]@1.6-9 name[A1,B1]@1.11-15 name[a.b]@1.17-19"},
    {"\"a b\"\"\"", 2, "text[a b]@1.1-5 text[]@1.6-7"},
    {"\"a\nb\" x", 2, "text[a\nb]@1.1-5 name[x]@1.7"},
    {"INPUT(\"Flow rate\") INPUT(\"\")", 5, "input[Flow rate]@1.1-18 name[INPUT]@1.20-24 '('@1.25 text[]@1.26-27 ')'@1.28"},
    {"Input(\"x\")", 2, "name[Input]@1.1-5 '('@1.6"},
    {"<= >= <> 1e3", 5, "LE@1.1-2 GE@1.4-5 '<'@1.7 '>'@1.8 int[1]@1.10"},
    {"\t\r\f\"x", 3, "'\f'@1.3 '\"'@1.4 name[x]@1.5"},
    {"=1\n", 5, "'='@1.1 int[1]@1.2 eol@1.3-2.0 eof@2.1 eof@2.1"},
    {std::string("=1\0+2", 5), 4, "'='@1.1 int[1]@1.2 eof@1.3 '+'@1.4"},
    {".5 ATAN2(", 4, "'.'@1.1 int[5]@1.2 ATAN2@1.4-8 '('@1.9"},
};

TEST(Grammar, TokensAndLocations) {
    for (const TokenCase& c : kTokens) {
        SCOPED_TRACE(c.input);
        EXPECT_EQ(scan(c.input, c.tokens), c.expected);
    }
}

// Runs the parser on a text as it is, without the driver's number rule.
std::string rawParseError(const std::string& text) {
    ExpressionParser::ParserDriver driver;
    std::istringstream stream(text);
    driver.scanner().yyrestart(stream);
    ExpressionParser::Parser parser(driver);
    EXPECT_EQ(parser.parse(), 1);
    return driver.oGetErrorMsg();
}

struct MessageCase {
    std::string formula;
    const char* message;
};

const MessageCase kMessages[] = {
    {"=", "1.2: syntax error, unexpected end of file"},
    {"=1+", "1.4: syntax error, unexpected end of file"},
    {"=(1", "1.4: syntax error, unexpected end of file"},
    {"=1 2", "1.4: syntax error, unexpected integer"},
    {"=SIN 1", "1.6: syntax error, unexpected integer, expecting '('"},
    {"=PI", "1.4: syntax error, unexpected end of file, expecting '('"},
    {"=--1", "1.3: syntax error, unexpected '-'"},
    {"=1+ATAN2(1;2)", "1.4-8: syntax error, unexpected ATAN2"},
    {"=LEFT(\"abc\";1>0)", "1.14: syntax error, unexpected '>', expecting ')' or '+' or '-'"},
    {"=MIN(a:b:c)", "Invalid cell name: \"a\""},
    {"=MIN(A1:B2:C3)", "1.11: syntax error, unexpected ':', expecting ')' or ';'"},
    {"=MIN(A1:XYZ)", "Invalid cell name: \"XYZ\""},
    {"=LOG(A1:A2)", "1.8: syntax error, unexpected ':', expecting ')'"},
    {"=MAX(1,2)", "1.7: syntax error, unexpected invalid token, expecting ')' or ';'"},
    {"=1,5", "1.3: syntax error, unexpected invalid token"},
    {"=IF(1;2;3;4)", "1.10: syntax error, unexpected ';', expecting ')'"},
    {"=LOG(1;2;3)", "1.9: syntax error, unexpected ';', expecting ')'"},
    {"=1<>2", "1.4: syntax error, unexpected '>'"},
    {"=1\n", "1.3-2.0: syntax error, unexpected end of line"},
    {"=2^-1", "1.4: syntax error, unexpected '-'"},
    {"=-SIN(1)", "1.3-5: syntax error, unexpected SIN"},
    {"=SIN(1;2)", "1.7: syntax error, unexpected ';'"},
    {"=ATAN2(1)", "1.9: syntax error, unexpected ')'"},
    {"=\"abc", "1.2: syntax error, unexpected invalid token"},
    {"=1\xff", "1.3: syntax error, unexpected invalid token"},
};

TEST(Grammar, SyntaxErrorMessages) {
    EXPECT_EQ(rawParseError("1"), "1.1: syntax error, unexpected integer, expecting end of file or '='");
    EXPECT_EQ(rawParseError("abc"), "1.1-3: syntax error, unexpected STRING, expecting end of file or '='");
    for (const MessageCase& c : kMessages) {
        SCOPED_TRACE(c.formula);
        ExpressionParser::ParserDriver driver;
        EXPECT_EQ(driver.poParseExpression(c.formula), nullptr);
        EXPECT_EQ(driver.oGetErrorMsg(), c.message);
    }
}

// Folds an indented outline into "label(child,child)" for compact tables.
std::string shapeOf(const std::string& outline) {
    std::istringstream lines(outline);
    std::string line, shape;
    std::vector<std::size_t> open;
    while (std::getline(lines, line)) {
        const std::size_t blanks = line.find_first_not_of(' ');
        const std::size_t depth = (blanks == std::string::npos ? line.size() : blanks) / 2;
        while (open.size() > depth) {
            shape += ")";
            open.pop_back();
        }
        if (!shape.empty() && shape.back() != '(') shape += ",";
        shape += line.substr(depth * 2) + "(";
        open.push_back(depth);
    }
    shape += std::string(open.size(), ')');
    std::string compact;  // leaves print as "1()"; drop the empty parentheses
    for (std::size_t i = 0; i < shape.size(); ++i) {
        if (shape.compare(i, 2, "()") == 0) {
            ++i;
            continue;
        }
        compact += shape[i];
    }
    return compact;
}

struct ShapeCase {
    const char* formula;
    const char* shape;
};

const ShapeCase kShapes[] = {
    {"=((1))", "1"},
    {"=-2^2", "- negate(^ power(2,2))"},
    {"=2^3^2", "^ power(2,^ power(3,2))"},
    {"=1-2-3", "- subtract(- subtract(1,2),3)"},
    {"=2*3/4%5", "% modulo(/ divide(* multiply(2,3),4),5)"},
    {"=1+2*3", "+ add(1,* multiply(2,3))"},
    {"=1+2>3", "> greater(+ add(1,2),3)"},
    {"=1<2<3", "< less(< less(1,2),3)"},
    {"=1--2", "- subtract(1,- negate(2))"},
    {"=1<=2>=3", ">= great equal(<= less equal(1,2),3)"},
    {"=-(SIN(1))+(ATAN2(1;2))", "+ add(- negate(sin sinus(1)),atan2 arctangent with 2 params(1,2))"},
    {"=SUM(1;2;3)", "+ add(+ add(1,2),3)"},
    {"=MIN(7)", "7"},
    {"=MAX(A1:B2)", "max maximum(1,2,3,4)"},
    {"=AND(A1:A2;B1)", "and logic(and logic(1,3),2)"},
    {"=OR(5;A1:A1)", "or logic(5,or logic(1))"},
    {"=LOG(100)", "(100,10)"},
    {"=LOG(8;2)", "log base 10 logarithm(8,2)"},
    {"=IF(A1>1)", "IF condition(> greater(1,1))"},
    {"=IF(1;\"a\";\"b\")", "IF condition(1,a,b)"},
    {"=TEXT(1;2>1)", "Format Value(1,> greater(2,1))"},
    {"=SIN (1)*PI()", "* multiply(sin sinus(1),3.14159)"},
    {"=NOT(ISERROR(DEC2BIN(HEX2DEC(\"F\"))))", "not logical(Evaluate Error State(Dec To Bin(Hex To Dec(F))))"},
    {"=RIGHT(LEFT(\"abc\";2);1)", "select right chars of string(select left chars of string (abc,2),1)"},
};

TEST(Grammar, TreeShapes) {
    TestHost host;
    host.setNumber("A1", 1);
    host.setNumber("B1", 2);
    host.setNumber("A2", 3);
    host.setNumber("B2", 4);
    for (const ShapeCase& c : kShapes) {
        SCOPED_TRACE(c.formula);
        const Evaluation result = evaluateFormula(c.formula, &host);
        ASSERT_TRUE(result.parsed);
        EXPECT_EQ(shapeOf(result.outline), c.shape);
    }
}

TEST(Grammar, OutlineIsIndentedTwoBlanksPerLevel) {
    TestHost host;
    host.setNumber("A1", 5);
    const Evaluation result = evaluateFormula("=IF(A1>0;LEFT(\"abc\";2);A1*2)", &host);
    EXPECT_EQ(result.outline,
              "IF condition\n  > greater\n    5\n    0\n  select left chars of string \n    abc\n    2\n"
              "  * multiply\n    5\n    2\n");
    ExpressionParser::ParserDriver driver;
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=\"\"+1000000"));
    std::stringstream deep;
    root->vPrintNode(deep, 3);
    EXPECT_EQ(deep.str(), "      + add\n        \n        1e+06\n");
}

TEST(Grammar, ParserTraceOfOneConstant) {
    ExpressionParser::ParserDriver driver;
    std::istringstream stream("=1");
    driver.scanner().yyrestart(stream);
    ExpressionParser::Parser parser(driver);
    std::ostringstream trace;
    parser.set_debug_stream(trace);
    parser.set_debug_level(1);
    EXPECT_EQ(parser.parse(), 0);
    driver.vSetASTNode(nullptr);  // frees the tree the raw parse handed over
    const std::string text = trace.str();
    EXPECT_EQ(text.rfind("Starting parse\nEntering state 0\nStack now 0\nReducing stack by rule 86 (line ", 0), 0u);
    EXPECT_NE(text.find("Next token is token integer (1.2: )\n"), std::string::npos);
    EXPECT_NE(text.find("   $1 = token integer (1.2: )\n-> $$ = nterm constant (1.2: )\n"), std::string::npos);
    EXPECT_LT(text.find("Reducing stack by rule 86"), text.find("Reading a token"));
    EXPECT_NE(text.find("Shifting token end of file (1.3: )\n"), std::string::npos);
    EXPECT_NE(text.find("Cleanup: popping"), std::string::npos);
}

TEST(Grammar, ScannerTraceGoesToStandardError) {
    ExpressionParser::ParserDriver driver;
    driver.vSetTrace(true);
    std::ostringstream captured;
    std::streambuf* saved = std::cerr.rdbuf(captured.rdbuf());
    delete driver.poParseExpression("=1");
    std::cerr.rdbuf(saved);
    EXPECT_NE(captured.str().find("--accepting rule at line "), std::string::npos);
    EXPECT_NE(captured.str().find("(\"=\")\n"), std::string::npos);
    EXPECT_NE(captured.str().find("--EOF (start condition 0)\n"), std::string::npos);
}

TEST(Grammar, HugeAndDeepInputs) {
    ExpressionParser::ParserDriver driver;
    const int depth = 100000;
    std::unique_ptr<ASTNode> nested(driver.poParseExpression("=" + std::string(depth, '(') + "1" + std::string(depth, ')')));
    ASSERT_TRUE(nested);
    EXPECT_EQ(nested->f64Evaluate(), 1.0);
    // 10 MB of text, a left-deep sum of a million terms: built and freed
    // without recursion (evaluating it would need a far deeper stack).
    std::string sum = "=1";
    sum.reserve(10000002);
    while (sum.size() < 10000000) sum += "+1234567.5";
    std::unique_ptr<ASTNode> wide(driver.poParseExpression(sum));
    EXPECT_TRUE(wide);
    EXPECT_EQ(driver.poParseExpression("=" + std::string(depth, '(') + "1"), nullptr);
}

}  // namespace
