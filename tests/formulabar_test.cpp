// What a formula bar needs beside the tokens and references: offsets in
// UTF-16 units and code points, token details, incomplete versus wrong, hints,
// help at the cursor and a catalogue whose argument lists evaluate as written.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "formulacursor.h"
#include "formulatokens.h"
#include "functioncatalogue.h"
#include "parserdriver.h"

namespace {

using namespace ExpressionParser;

struct OffsetCase {
    std::string text;
    const char* spans;  // per token: bytes, UTF-16 units and code points, each begin-end
};

// "€" is three bytes, one UTF-16 unit; "𝄞" four bytes, two units; a lone 0xff one of each.
const OffsetCase kOffsets[] = {
    {"=\"\xe2\x82\xac\"&A1", "0-1/0-1/0-1 1-6/1-4/1-4 6-7/4-5/4-5 7-9/5-7/5-7"},
    {"=\"\xf0\x9d\x84\x9e\"+1", "0-1/0-1/0-1 1-7/1-5/1-4 7-8/5-6/4-5 8-9/6-7/5-6"},
    {"=1\xff+2", "0-1/0-1/0-1 1-2/1-2/1-2 2-3/2-3/2-3 3-4/3-4/3-4 4-5/4-5/4-5"},
    // Outside a text each byte of "€" is a token; the first holds the whole character.
    {"=\xe2\x82\xac", "0-1/0-1/0-1 1-2/1-2/1-2 2-3/2-2/2-2 3-4/2-2/2-2"},
    // A truncated sequence is two invalid bytes, two units.
    {"\"\xe2\x82\"", "0-4/0-4/0-4"},
};

TEST(FormulaBar, TokenOffsetsInEveryUnit) {
    for (const OffsetCase& c : kOffsets) {
        SCOPED_TRACE(c.text);
        std::string spans;
        for (const FormulaToken& t : FormulaTokens::oGetTokens(c.text)) {
            spans += (spans.empty() ? "" : " ") + std::to_string(t.u64Begin) + "-" + std::to_string(t.u64End) + "/" +
                     std::to_string(t.u64BeginUtf16) + "-" + std::to_string(t.u64EndUtf16) + "/" +
                     std::to_string(t.u64BeginCodePoint) + "-" + std::to_string(t.u64EndCodePoint);
        }
        EXPECT_EQ(spans, c.spans);
    }
}

TEST(FormulaBar, ReferenceAndErrorOffsetsInEveryUnit) {
    const std::string formula = "=\"\xf0\x9d\x84\x9e\"+SUM(A1:B2;C3)+";
    const std::vector<CellReference> references = CellReferences::oGetReferences(formula);
    ASSERT_EQ(references.size(), 2u);
    EXPECT_EQ(references[0].u64BeginUtf16, 10u);
    EXPECT_EQ(references[0].u64EndCodePoint, 14u);
    EXPECT_EQ(references[0].oTo.u64BeginUtf16, 13u);
    EXPECT_EQ(references[1].oFrom.u64EndUtf16, 18u);
    ParserDriver driver;
    driver.vSetErrorStream(nullptr);
    EXPECT_EQ(std::unique_ptr<ASTNode>(driver.poParseExpression(formula)), nullptr);
    const SyntaxError* error = driver.poGetSyntaxError();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->oBegin.u64Offset, formula.size());
    EXPECT_EQ(error->oBegin.u64Utf16Offset, formula.size() - 2);
    EXPECT_EQ(error->oEnd.u64CodePointOffset, formula.size() - 3);
}

struct DetailCase {
    std::string text;
    const char* details;
};

const DetailCase kDetails[] = {
    {"=IF(a1>=rate;1.5;x=2)", "start function open cell comparison variable argument double argument variable "
                              "comparison integer close"},
    {"=SUM(A1:B2)^-\"t\"&INPUT(\"n\")", "start function open cell range cell close arithmetic arithmetic text "
                                         "character input"},
    {std::string("=1\0=2\n\"x", 8), "start integer formula-end start integer line unterminated variable"},
};

TEST(FormulaBar, TokenDetailsBesideTheKinds) {
    for (const DetailCase& c : kDetails) {
        SCOPED_TRACE(c.text);
        std::string details;
        for (const FormulaToken& t : FormulaTokens::oGetTokens(c.text)) {
            details += (details.empty() ? "" : " ") + FormulaTokens::oGetDetailName(t.oDetail);
        }
        EXPECT_EQ(details, c.details);
    }
}

struct AdviceCase {
    std::string formula;
    bool incomplete;
    const char* hint;  // "" for none
};

const AdviceCase kAdvice[] = {
    {"=SUM(A1;", true, "A closing parenthesis \")\" is missing."},
    {"=SUM(A1;  ", true, "A closing parenthesis \")\" is missing."},
    {"=1+", true, ""},
    {"=\"abc", true, "The text is not closed: a double quote is missing."},
    {"=SUM(1;\"a;b", true, "The text is not closed: a double quote is missing."},
    {"=1+INPUT(\"flow", true, "The name of INPUT is not closed: write INPUT(\"name\")."},
    {"=SUM(A1:B", true, "\"B\" is no cell name: a range joins two cell names, as in A1:B3."},
    {"=SUM(A1;;", false, ""},
    {"=1+*2", false, ""},
    {"=1 \"abc", false, "The text is not closed: a double quote is missing."},
    {"=SUM(A1:total)", false, "\"total\" is no cell name: a range joins two cell names, as in A1:B3."},
    {"=Sum(1)", false, "Function names are written all in capitals or all in small letters: SUM or sum."},
    {"=sumx (1)", false, "\"sumx\" is not a function of this language."},
    {"=MAX(1,2)", false, "Arguments are separated by \";\", not \",\", and numbers are written with a point: 1.5."},
    {"=2^-1", false, "A signed exponent needs parentheses: 2^(-1)."},
    {"=-SIN(1)", false, "A sign before a function or another sign needs parentheses: -(SIN(1)), -(-1)."},
    {"=1+LEFT(\"ab\";1)", false, "LEFT stands alone or in parentheses: 1+(LEFT(...))."},
    {"=1<>2", false, "There is no \"<>\" operator: write NOT(a=b)."},
    {std::string("=SUM(1;\0", 8), false, ""},
};

TEST(FormulaBar, IncompleteOrWrongWithHints) {
    ParserDriver driver;
    driver.vSetErrorStream(nullptr);
    for (const AdviceCase& c : kAdvice) {
        SCOPED_TRACE(c.formula);
        const std::string message = (delete driver.poParseExpression(c.formula), driver.oGetErrorMsg());
        const SyntaxError* error = driver.poGetSyntaxError();
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->bIncomplete, c.incomplete);
        EXPECT_EQ(error->oHint, c.hint);
        // The message stays the parser's own.
        EXPECT_EQ(message.find("hint"), std::string::npos);
    }
}

struct CursorCase {
    const char* text;
    std::uint64_t offset;
    const char* token;     // its text, or "-"
    const char* function;  // or "-"
    std::int32_t argument;
    bool inText;
    const char* completions;
};

const CursorCase kCursor[] = {
    {"=IF(A1>0;SU", 11, "SU", "IF", 1, false, "SUM"},
    {"=IF(A1>0;su", 10, "su", "IF", 1, false, "SIN SUM SQRT"},
    {"=SUM(1;(2+3", 11, "3", "SUM", 1, false, ""},
    {"=LEFT(\"ab", 8, "ab", "LEFT", 0, true, ""},
    {"=LEFT(\"ab\";RIGHT(x;2));", 16, "RIGHT", "LEFT", 1, false, "RIGHT"},
    {"=LEFT(\"ab\";RIGHT(x;2));", 18, "x", "RIGHT", 0, false, ""},
    {"=TEXT(\"a;b\";1)", 9, "\"a;b\"", "TEXT", 0, true, ""},
    {"=PI()+", 6, "+", "-", -1, false, "*"},
    {"=1", 0, "=", "-", -1, false, ""},
    {"=SIN(1)", 99, ")", "-", -1, false, ""},
    {"", 3, "-", "-", -1, false, ""},
    {"=ln(1;", 6, ";", "LN", 1, false, "*"},
};

TEST(FormulaBar, HelpAtTheCursor) {
    std::string all;
    for (const FunctionEntry& entry : FunctionCatalogue::oGetFunctions()) all += entry.oName + " ";
    all += "INPUT";
    for (const CursorCase& c : kCursor) {
        SCOPED_TRACE(std::string(c.text) + " at " + std::to_string(c.offset));
        const CursorHelp help = FormulaCursor::oGetHelp(c.text, c.offset);
        EXPECT_EQ(help.bHasToken ? std::string(help.oToken.oText(c.text)) : "-", c.token);
        EXPECT_EQ(help.poFunction ? help.poFunction->oName : "-", c.function);
        EXPECT_EQ(help.s32Argument, c.argument);
        EXPECT_EQ(help.bInText, c.inText);
        std::string completions;
        for (const std::string& name : help.oCompletions) completions += (completions.empty() ? "" : " ") + name;
        EXPECT_EQ(completions, std::string(c.completions) == "*" ? all : c.completions);
    }
}

TEST(FormulaBar, CatalogueArgumentsMatchSignaturesAndCounts) {
    for (const FunctionEntry& entry : FunctionCatalogue::oGetFunctions()) {
        SCOPED_TRACE(entry.oName);
        std::string signature = entry.oName + "(";
        std::uint32_t required = 0;
        bool repeats = false;
        for (std::size_t i = 0; i < entry.oArguments.size(); ++i) {
            const FunctionArgument& argument = entry.oArguments[i];
            signature += (i == 0 ? "" : "; ") + argument.oName + (argument.bRepeats ? "; ..." : "");
            required += argument.bOptional ? 0 : 1;
            repeats = repeats || argument.bRepeats;
            EXPECT_FALSE(argument.oDescription.empty());
            EXPECT_EQ(argument.oKind == ArgumentKind::Range, entry.bAcceptsRanges);
        }
        EXPECT_EQ(signature + ")", entry.oSignature);
        EXPECT_EQ(required, entry.u32MinArguments);
        EXPECT_EQ(repeats ? FunctionCatalogue::kUnbounded : entry.oArguments.size(), entry.u32MaxArguments);
    }
}

// Each function called with sample values given by argument name, written in
// the catalogue's order: a listing with two arguments swapped gives another result.
struct CallCase {
    const char* function;
    std::map<std::string, std::string> samples;
    double number;
    const char* text;  // null for a number result
};

const CallCase kCalls[] = {
    {"SIN", {{"angle", "0.5"}}, std::sin(0.5), nullptr},
    {"COS", {{"angle", "0.5"}}, std::cos(0.5), nullptr},
    {"TAN", {{"angle", "0.5"}}, std::tan(0.5), nullptr},
    {"ASIN", {{"value", "0.5"}}, std::asin(0.5), nullptr},
    {"ACOS", {{"value", "0.5"}}, std::acos(0.5), nullptr},
    {"ATAN", {{"value", "0.5"}}, std::atan(0.5), nullptr},
    {"ATAN2", {{"x", "1"}, {"y", "2"}}, std::atan2(2.0, 1.0), nullptr},
    {"MAX", {{"value", "3"}}, 3, nullptr},
    {"MIN", {{"value", "3"}}, 3, nullptr},
    {"SUM", {{"value", "3"}}, 3, nullptr},
    {"AND", {{"value", "2"}}, 2, nullptr},
    {"OR", {{"value", "0"}}, 0, nullptr},
    {"NOT", {{"value", "0"}}, 1, nullptr},
    {"SQRT", {{"value", "9"}}, 3, nullptr},
    {"LN", {{"value", "1"}}, 0, nullptr},
    {"LOG", {{"value", "8"}, {"base", "2"}}, 3, nullptr},
    {"IF", {{"condition", "0"}, {"then", "1"}, {"else", "2"}}, 2, nullptr},
    {"PI", {}, std::acos(-1.0), nullptr},
    {"ISERROR", {{"value", "1"}}, 0, nullptr},
    {"TEXT", {{"value", "1.5"}, {"format", "\"0.00\""}}, 0, "1.50"},
    {"LEFT", {{"text", "\"abc\""}, {"count", "2"}}, 0, "ab"},
    {"RIGHT", {{"text", "\"abc\""}, {"count", "2"}}, 0, "bc"},
    {"DEC2BIN", {{"number", "5"}}, 0, "101"},
    {"BIN2DEC", {{"text", "\"101\""}}, 5, nullptr},
    {"DEC2HEX", {{"number", "255"}}, 0, "FF"},
    {"HEX2DEC", {{"text", "\"FF\""}}, 255, nullptr},
    {"BIN2HEX", {{"text", "\"1111\""}}, 0, "F"},
    {"HEX2BIN", {{"text", "\"F\""}}, 0, "1111"},
};

TEST(FormulaBar, EveryListedFormEvaluatesInItsDocumentedOrder) {
    ASSERT_EQ(std::size(kCalls), FunctionCatalogue::oGetFunctions().size());
    ParserDriver driver;
    driver.vSetErrorStream(nullptr);
    for (const CallCase& c : kCalls) {
        SCOPED_TRACE(c.function);
        const FunctionEntry* entry = FunctionCatalogue::poFind(c.function);
        ASSERT_NE(entry, nullptr);
        std::string formula = "=" + entry->oName + "(";
        for (std::size_t i = 0; i < entry->oArguments.size(); ++i) {
            formula += (i == 0 ? "" : ";") + c.samples.at(entry->oArguments[i].oName);
        }
        formula += ")";
        const std::unique_ptr<ASTNode> tree(driver.poParseExpression(formula));
        ASSERT_NE(tree, nullptr) << formula << ": " << driver.oGetErrorMsg();
        EXPECT_EQ(tree->errType(), static_cast<std::uint32_t>(ErrNone)) << formula;
        if (c.text != nullptr) {
            EXPECT_EQ(tree->exprType(), static_cast<std::uint32_t>(ExprString)) << formula;
            EXPECT_EQ(tree->stringEvaluate(), c.text) << formula;
        } else {
            EXPECT_EQ(tree->exprType(), static_cast<std::uint32_t>(ExprNumber)) << formula;
            EXPECT_DOUBLE_EQ(tree->f64Evaluate(), c.number) << formula;
        }
    }
}

}  // namespace
