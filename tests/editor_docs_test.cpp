// The examples of docs/editor.md, run: each block names a text and what the
// editor operations give for it, so the document cannot drift.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "formulacursor.h"
#include "formulatokens.h"
#include "parserdriver.h"

namespace {

using namespace ExpressionParser;

struct Example {
    std::string kind;  // the block's language: tokens, units, refs, syntax-error or cursor
    std::string text;
    std::vector<std::string> lines;
};

std::vector<Example> examplesOf(const std::string& path) {
    std::ifstream document(path);
    std::vector<Example> examples;
    Example* open = nullptr;
    for (std::string line; std::getline(document, line);) {
        if (open == nullptr) {
            for (const char* kind : {"tokens", "units", "refs", "syntax-error", "cursor"}) {
                if (line == std::string("```") + kind) {
                    examples.push_back(Example{kind, "", {}});
                    open = &examples.back();
                }
            }
        } else if (line == "```") {
            open = nullptr;
        } else if (open->text.empty()) {
            open->text = line;
        } else {
            open->lines.push_back(line);
        }
    }
    return examples;
}

std::string corner(const CellCorner& c) {
    return std::string(c.bColumnAbsolute ? "$" : "") + std::to_string(c.s32Column) + "," +
           (c.bRowAbsolute ? "$" : "") + std::to_string(c.s32Row);
}

std::string position(const SourcePosition& p) {
    return std::to_string(p.s32Line) + "." + std::to_string(p.s32Column) + " (" + std::to_string(p.u64Offset) + ")";
}

std::vector<std::string> run(const Example& example) {
    std::vector<std::string> lines;
    const std::string& text = example.text;
    if (example.kind == "tokens") {
        for (const FormulaToken& t : FormulaTokens::oGetTokens(text)) {
            lines.push_back(std::to_string(t.u64Begin) + " " + std::to_string(t.u64End) + " " +
                            FormulaTokens::oGetKindName(t.oKind) + " " + std::string(t.oText(text)));
        }
    } else if (example.kind == "units") {
        const auto span = [](std::uint64_t begin, std::uint64_t end) {
            return std::to_string(begin) + "-" + std::to_string(end);
        };
        for (const FormulaToken& t : FormulaTokens::oGetTokens(text)) {
            lines.push_back(span(t.u64Begin, t.u64End) + " " + span(t.u64BeginUtf16, t.u64EndUtf16) + " " +
                            span(t.u64BeginCodePoint, t.u64EndCodePoint) + " " +
                            FormulaTokens::oGetDetailName(t.oDetail) + " " + std::string(t.oText(text)));
        }
    } else if (example.kind == "cursor") {
        // The text's "|" marks the cursor and is not part of the formula.
        const std::size_t cursor = text.find('|');
        const std::string formula = text.substr(0, cursor) + text.substr(cursor + 1);
        const CursorHelp help = FormulaCursor::oGetHelp(formula, cursor);
        lines.push_back("token " + (help.bHasToken ? std::string(help.oToken.oText(formula)) : "none"));
        lines.push_back("function " + (help.poFunction ? help.poFunction->oName + " argument " +
                                                           std::to_string(help.s32Argument)
                                                     : std::string("none")));
        std::string completions = "completions";
        for (const std::string& name : help.oCompletions) completions += " " + name;
        lines.push_back(help.bInText ? "in a text" : completions);
    } else if (example.kind == "refs") {
        for (const CellReference& r : CellReferences::oGetReferences(text)) {
            std::string line = std::to_string(r.u64Begin) + " " + std::to_string(r.u64End) + " " +
                               std::string(r.oText(text)) + " " + corner(r.oFrom);
            if (r.bIsRange) line += " " + corner(r.oTo);
            lines.push_back(line);
        }
    } else {
        ParserDriver driver;
        std::ostringstream silenced;
        std::streambuf* saved = std::cerr.rdbuf(silenced.rdbuf());
        std::unique_ptr<ASTNode> tree(driver.poParseExpression(text));
        std::cerr.rdbuf(saved);
        lines.push_back(driver.oGetErrorMsg());
        if (const SyntaxError* error = driver.poGetSyntaxError()) {
            std::string line = position(error->oBegin) + " " + position(error->oEnd);
            if (!error->oInvalidCellName.empty()) line += " invalid cell name " + error->oInvalidCellName;
            if (!error->oUnexpected.empty()) line += " unexpected " + error->oUnexpected;
            for (std::size_t i = 0; i < error->oExpected.size(); ++i) {
                line += (i == 0 ? " expecting " : " or ") + error->oExpected[i];
            }
            lines.push_back(line);
            lines.push_back(error->bIncomplete ? "incomplete" : "wrong");
            if (!error->oHint.empty()) lines.push_back("hint: " + error->oHint);
        }
    }
    return lines;
}

TEST(EditorDocs, ExamplesHold) {
    const std::string source = __FILE__;
    const std::string path = source.substr(0, source.rfind("/tests/")) + "/docs/editor.md";
    const std::vector<Example> examples = examplesOf(path);
    ASSERT_GE(examples.size(), 12u) << path;
    for (const Example& example : examples) {
        SCOPED_TRACE(example.kind + ": " + example.text);
        EXPECT_EQ(run(example), example.lines);
    }
}

}  // namespace
