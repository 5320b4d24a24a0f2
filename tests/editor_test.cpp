// Editor support: tokens as the parser reads them, cell references with their
// positions, and the function catalogue checked against the grammar.
#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "formulatokens.h"
#include "functioncatalogue.h"
#include "location.hh"
#include "parser.hh"
#include "testhost.h"

namespace {

using ExpressionParser::CellReference;
using ExpressionParser::CellReferences;
using ExpressionParser::FormulaToken;
using ExpressionParser::FormulaTokens;
using ExpressionParser::FunctionCatalogue;
using ExpressionParser::TokenKind;

// "kind text" per token, one string per formula, for readable failures.
std::string describeTokens(const std::string& text) {
    std::string described;
    for (const FormulaToken& token : FormulaTokens::oGetTokens(text)) {
        if (!described.empty()) described += " | ";
        described += FormulaTokens::oGetKindName(token.oKind) + " " + std::string(token.oText(text));
    }
    return described;
}

struct TokenCase {
    std::string text;
    std::string tokens;
};

const TokenCase kTokens[] = {
    {"=SUM($A$1:B2; x) * 2.5", "operator = | function SUM | parenthesis ( | name $A$1 | separator : | name B2 | "
                               "separator ; | name x | parenthesis ) | operator * | number 2.5"},
    {"=a<=b>=c<>d^2%3/4-+", "operator = | name a | operator <= | name b | operator >= | name c | operator < | "
                            "operator > | name d | operator ^ | number 2 | operator % | number 3 | operator / | "
                            "number 4 | operator - | operator +"},
    {"sin Sin SINX pi Pi LOG10 or OR1", "function sin | name Sin | name SINX | function pi | name Pi | name LOG10 | "
                                        "function or | name OR1"},
    {"INPUT(\"Flow rate\")+input(\"\")", "input INPUT(\"Flow rate\") | operator + | name input | parenthesis ( | "
                                         "text \"\" | parenthesis )"},
    {"\"a\nb\"\n1.2.3", "text \"a\nb\" | end \n | number 1.2 | invalid . | number 3"},
    // An unterminated quote is the quote alone; the rest is read as usual.
    {"=LEFT(\"abc;1)", "operator = | function LEFT | parenthesis ( | invalid \" | name abc | separator ; | "
                       "number 1 | parenthesis )"},
    {"=1,5 # \xff\f", "operator = | number 1 | invalid , | number 5 | invalid # | invalid \xff | invalid \f"},
    {std::string("=1\0+2", 5), std::string("operator = | number 1 | end ") + '\0' + " | operator + | number 2"},
    // A byte 0 inside a quoted text or a named input belongs to that one token.
    {std::string("=\"a\0b\"+INPUT(\"x\0y\")+input(\"z\0\"", 30),
     std::string("operator = | text \"a") + '\0' + "b\" | operator + | input INPUT(\"x" + '\0' +
         "y\") | operator + | name input | parenthesis ( | text \"z" + '\0' + "\""},
    {"", ""},
    {" \t\r ", ""},
};

TEST(Tokens, KindsAndTexts) {
    for (const TokenCase& c : kTokens) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(describeTokens(c.text), c.tokens);
    }
}

TEST(Tokens, SpansTileTheTextBetweenBlanks) {
    const std::string text = " =IF( A1 >\t0;\r\n\"yes\" ; \"no\" )  ";
    std::uint64_t at = 0;
    for (const FormulaToken& token : FormulaTokens::oGetTokens(text)) {
        for (; at < token.u64Begin; ++at) EXPECT_NE(std::string(" \t\r").find(text[at]), std::string::npos) << at;
        EXPECT_LT(token.u64Begin, token.u64End);
        EXPECT_EQ(text.substr(token.u64Begin, token.u64End - token.u64Begin), token.oText(text));
        at = token.u64End;
    }
    EXPECT_EQ(text.find_first_not_of(" ", at), std::string::npos);
}

// The parser's trace names each token it reads and where it stands.
std::vector<std::string> tokensTheParserReads(const std::string& formula) {
    ExpressionParser::ParserDriver driver;
    driver.vSetTrace(true);
    std::ostringstream trace;
    std::streambuf* saved = std::cerr.rdbuf(trace.rdbuf());
    delete driver.poParseExpression(formula);
    std::cerr.rdbuf(saved);
    std::vector<std::string> read;
    std::istringstream lines(trace.str());
    const std::string marker = "Next token is token ";
    // A token is named again whenever a state looks at it; only reading it counts.
    bool reading = false;
    for (std::string line; std::getline(lines, line);) {
        if (reading && line.rfind(marker, 0) == 0) read.push_back(line.substr(marker.size()));
        reading = line == "Reading a token";
    }
    return read;
}

// The display names the parser gives each kind; a function keyword is its own name.
const std::map<std::string, TokenKind> kDisplayNames = {
    {"integer", TokenKind::Number},     {"double", TokenKind::Number},   {"STRING", TokenKind::Name},
    {"string", TokenKind::Text},        {"input", TokenKind::Input},     {"end of line", TokenKind::End},
    {"end of file", TokenKind::End},    {"invalid token", TokenKind::Invalid}, {"'('", TokenKind::Parenthesis},
    {"')'", TokenKind::Parenthesis},    {"';'", TokenKind::Separator},   {"':'", TokenKind::Separator},
    {"LE", TokenKind::Operator},        {"GE", TokenKind::Operator},
};

TokenKind kindOfDisplayName(const std::string& name) {
    const auto found = kDisplayNames.find(name);
    if (found != kDisplayNames.end()) return found->second;
    if (name.size() == 3 && name[0] == '\'') return TokenKind::Operator;
    return TokenKind::Function;
}

TEST(Tokens, AgreeWithWhatTheParserReads) {
    const std::string formulas[] = {
        "=SUM(A1:B2;3)*2",        "=IF(a>=1;\"x\";INPUT(\"r\"))", "=MAX(1,2)",     "=LEFT(\"abc\";1>0)",
        "=1<>2",                  "=ATAN2(1;2)^PI()",               "=\"a\nb\"+1\n", "=\"open",
        "=sin(1)+Sin",            std::string("=1\0=2+c", 8),       "=1 2",           "=.5",
        "=DEC2BIN(7)&HEX2BIN(1)", "=NOT(1)%ISERROR(x);",     std::string("=\"a\0b\"+INPUT(\"x\0y\")+1", 21),
    };
    for (const std::string& formula : formulas) {
        SCOPED_TRACE(formula);
        const std::vector<FormulaToken> tokens = FormulaTokens::oGetTokens(formula);
        std::size_t next = 0;
        std::uint64_t lineStart = 0;
        int line = 1;
        for (const std::string& read : tokensTheParserReads(formula)) {
            const std::size_t open = read.rfind(" (");
            const std::string name = read.substr(0, open);
            const std::string where = read.substr(open + 2, read.size() - open - 5);
            if (next == tokens.size()) {
                // Only the end of the text may follow our last token.
                EXPECT_EQ(name, "end of file");
                continue;
            }
            const FormulaToken& token = tokens[next++];
            ExpressionParser::location located;
            located.begin.line = line;
            located.begin.column = static_cast<int>(token.u64Begin - lineStart + 1);
            located.end = located.begin;
            located.end.column += static_cast<int>(token.u64End - token.u64Begin);
            if (token.oText(formula) == "\n") {
                located.end.lines(1);
                ++line;
                lineStart = token.u64End;
            }
            std::ostringstream printed;
            printed << located;
            EXPECT_EQ(printed.str(), where) << name;
            EXPECT_EQ(kindOfDisplayName(name), token.oKind) << name << " at " << where;
        }
    }
}

std::string describeReferences(const std::string& formula) {
    std::string described;
    for (const CellReference& r : CellReferences::oGetReferences(formula)) {
        if (!described.empty()) described += " | ";
        std::ostringstream one;
        one << r.oText(formula) << " @" << r.u64Begin << "-" << r.u64End << (r.bIsRange ? " range " : " cell ");
        for (const auto& corner : {r.oFrom, r.oTo}) {
            one << (corner.bColumnAbsolute ? "$" : "") << corner.s32Column << (corner.bRowAbsolute ? "$" : "")
                << corner.s32Row << "@" << corner.u64Begin << " ";
        }
        described += one.str();
    }
    return described;
}

struct ReferenceCase {
    std::string formula;
    const char* references;
};

const ReferenceCase kReferences[] = {
    {"=A1+$B$2*C$3-$D4", "A1 @1-3 cell 00@1 00@1  | $B$2 @4-8 cell $1$1@4 $1$1@4  | "
                         "C$3 @9-12 cell 2$2@9 2$2@9  | $D4 @13-16 cell $33@13 $33@13 "},
    {"=SUM(A1:B3; aa10 : $Z$1)", "A1:B3 @5-10 range 00@5 12@8  | aa10 : $Z$1 @12-23 range 269@12 $25$0@19 "},
    // Texts, named inputs, function keywords and names that are no cells.
    {"=IF(\"B2\";INPUT(\"C3\");ATAN2(1;2)+rate+A1,B1+A0+XFD)", ""},
    {"=SUM(A1:x;y:B2;A1:B2:C3)", "A1 @5-7 cell 00@5 00@5  | B2 @12-14 cell 11@12 11@12  | "
                                 "A1:B2 @15-20 range 00@15 11@18  | C3 @21-23 cell 22@21 22@21 "},
    {"=SUM(C7:", "C7 @5-7 cell 26@5 26@5 "},
    {"=LOG10+\"x", "LOG10 @1-6 cell 85089@1 85089@1 "},
    {std::string("=1\0=Q9", 6), "Q9 @4-6 cell 168@4 168@4 "},
};

TEST(References, FollowTheParsersReading) {
    for (const ReferenceCase& c : kReferences) {
        SCOPED_TRACE(c.formula);
        EXPECT_EQ(describeReferences(c.formula), c.references);
    }
}

TEST(References, AreTheNamesTheParserLooksUp) {
    const std::string formula = "=SUM(B1:C2;d4)+max(x;$E$5)-IF(A1>0;\"A2\";input(\"A3\"))";
    TestHost host;
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&host);
    std::unique_ptr<ASTNode> tree(driver.poParseExpression(formula));
    ASSERT_TRUE(tree);
    std::vector<std::string> cells;
    for (const CellReference& reference : CellReferences::oGetReferences(formula)) {
        int column = 0;
        int row = 0;
        for (const auto& corner : {reference.oFrom, reference.oTo}) {
            const std::string name = formula.substr(corner.u64Begin, corner.u64End - corner.u64Begin);
            ASSERT_EQ(SpreadSheetHelper::s8CreateColumnLine(name, column, row), 0) << name;
            EXPECT_EQ(column, corner.s32Column);
            EXPECT_EQ(row, corner.s32Row);
        }
        if (!reference.bIsRange) cells.push_back(std::string(reference.oText(formula)));
    }
    // The host is asked for the range's cells and then for each name; named values are no references.
    const std::vector<std::string> expected = {"B1", "C1", "B2", "C2", "d4", "x", "$E$5", "A1", "A3"};
    EXPECT_EQ(host.lookups, expected);
    EXPECT_EQ(cells, (std::vector<std::string>{"d4", "$E$5", "A1"}));
}

TEST(FunctionCatalogue, EveryEntryParsesWithItsArgumentCounts) {
    ExpressionParser::ParserDriver driver;
    const auto call = [](const std::string& name, std::uint32_t count, const std::string& argument) {
        std::string formula = "=" + name + "(";
        for (std::uint32_t i = 0; i < count; ++i) formula += (i == 0 ? "" : ";") + argument;
        return formula + ")";
    };
    std::ostringstream silenced;
    std::streambuf* saved = std::cerr.rdbuf(silenced.rdbuf());
    for (const auto& entry : FunctionCatalogue::oGetFunctions()) {
        SCOPED_TRACE(entry.oName);
        EXPECT_EQ(entry.oSignature.rfind(entry.oName + "(", 0), 0u);
        EXPECT_FALSE(entry.oDescription.empty());
        const std::uint32_t lastTried = std::min(entry.u32MaxArguments, entry.u32MinArguments + 3);
        for (std::uint32_t count = entry.u32MinArguments; count <= lastTried; ++count) {
            std::unique_ptr<ASTNode> tree(driver.poParseExpression(call(entry.oName, count, "1")));
            EXPECT_TRUE(tree) << count << " arguments: " << driver.oGetErrorMsg();
        }
        const auto parses = [&](std::uint32_t count) {
            return std::unique_ptr<ASTNode>(driver.poParseExpression(call(entry.oName, count, "1"))) != nullptr;
        };
        if (entry.u32MinArguments > 0) {
            EXPECT_FALSE(parses(entry.u32MinArguments - 1));
        }
        if (entry.u32MaxArguments != FunctionCatalogue::kUnbounded) {
            EXPECT_FALSE(parses(entry.u32MaxArguments + 1));
        }
        std::unique_ptr<ASTNode> range(driver.poParseExpression(call(entry.oName, 1, "A1:B2")));
        EXPECT_EQ(range != nullptr, entry.bAcceptsRanges);
    }
    std::cerr.rdbuf(saved);
}

TEST(FunctionCatalogue, ListsEveryFunctionKeyword) {
    using Parser = ExpressionParser::Parser;
    std::size_t keywords = 0;
    for (int symbol = 0; symbol < Parser::YYNTOKENS; ++symbol) {
        const std::string name = Parser::symbol_name(static_cast<Parser::symbol_kind_type>(symbol));
        const std::vector<FormulaToken> tokens = FormulaTokens::oGetTokens(name);
        if (tokens.size() != 1 || tokens[0].oKind != TokenKind::Function) continue;
        ++keywords;
        std::string lower = name;
        for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        ASSERT_NE(FunctionCatalogue::poFind(name), nullptr) << name;
        EXPECT_EQ(FunctionCatalogue::poFind(lower), FunctionCatalogue::poFind(name));
    }
    EXPECT_EQ(keywords, FunctionCatalogue::oGetFunctions().size());
    EXPECT_EQ(FunctionCatalogue::poFind("Sum"), nullptr);
    EXPECT_EQ(FunctionCatalogue::poFind("INPUT"), nullptr);
}

}  // namespace
