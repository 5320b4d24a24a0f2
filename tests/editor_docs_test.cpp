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
#include "formulatokens.h"
#include "parserdriver.h"

namespace {

using namespace ExpressionParser;

struct Example {
    std::string kind;  // the block's language: tokens, refs or syntax-error
    std::string text;
    std::vector<std::string> lines;
};

std::vector<Example> examplesOf(const std::string& path) {
    std::ifstream document(path);
    std::vector<Example> examples;
    Example* open = nullptr;
    for (std::string line; std::getline(document, line);) {
        if (open == nullptr) {
            for (const char* kind : {"tokens", "refs", "syntax-error"}) {
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
        }
    }
    return lines;
}

TEST(EditorDocs, ExamplesHold) {
    const std::string source = __FILE__;
    const std::string path = source.substr(0, source.rfind("/tests/")) + "/docs/editor.md";
    const std::vector<Example> examples = examplesOf(path);
    ASSERT_GE(examples.size(), 7u) << path;
    for (const Example& example : examples) {
        SCOPED_TRACE(example.kind + ": " + example.text);
        EXPECT_EQ(run(example), example.lines);
    }
}

}  // namespace
