// Arbitrary bytes through the editor operations: token spans tile the text
// with only blanks between them, every listed reference reads back as the
// cell it names, and a failed parse locates its error inside the text.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "formulatokens.h"
#include "parserdriver.h"

namespace {

using ExpressionParser::CellCorner;
using ExpressionParser::CellReference;
using ExpressionParser::FormulaToken;

constexpr std::size_t kLargestInput = 65536;

[[noreturn]] void fail(const char* what, const std::string& text, std::uint64_t at) {
    std::fprintf(stderr, "editor_fuzzer: %s at byte %llu of %zu\n", what, static_cast<unsigned long long>(at),
                 text.size());
    std::abort();
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

void tokensTile(const std::string& text) {
    std::uint64_t at = 0;
    for (const FormulaToken& token : ExpressionParser::FormulaTokens::oGetTokens(text)) {
        if (token.u64Begin < at) fail("tokens overlap", text, token.u64Begin);
        if (token.u64End <= token.u64Begin || token.u64End > text.size()) fail("bad token span", text, token.u64Begin);
        for (; at < token.u64Begin; ++at) {
            if (!isBlank(text[at])) fail("a byte outside every token", text, at);
        }
        at = token.u64End;
    }
    for (; at < text.size(); ++at) {
        if (!isBlank(text[at])) fail("a byte after the last token", text, at);
    }
}

void cornerReadsBack(const std::string& text, const CellCorner& corner) {
    if (corner.u64End <= corner.u64Begin || corner.u64End > text.size()) fail("bad corner span", text, corner.u64Begin);
    const std::string name = text.substr(corner.u64Begin, corner.u64End - corner.u64Begin);
    int column = -1;
    int row = -1;
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0) fail("a corner that is no cell name", text, corner.u64Begin);
    if (column != corner.s32Column || row != corner.s32Row) fail("a corner names another cell", text, corner.u64Begin);
    if (corner.bColumnAbsolute != (name[0] == '$')) fail("column marker", text, corner.u64Begin);
    if (corner.bRowAbsolute != (name.find('$', 1) != std::string::npos)) fail("row marker", text, corner.u64Begin);
}

void referencesReadBack(const std::string& text) {
    std::uint64_t previousEnd = 0;
    for (const CellReference& reference : ExpressionParser::CellReferences::oGetReferences(text)) {
        if (reference.u64Begin < previousEnd) fail("references out of order", text, reference.u64Begin);
        cornerReadsBack(text, reference.oFrom);
        cornerReadsBack(text, reference.oTo);
        if (reference.oFrom.u64Begin != reference.u64Begin || reference.oTo.u64End != reference.u64End) {
            fail("corners outside the reference", text, reference.u64Begin);
        }
        if (!reference.bIsRange && reference.oFrom.u64Begin != reference.oTo.u64Begin) fail("single cell", text, reference.u64Begin);
        previousEnd = reference.u64End;
    }
}

void syntaxErrorInsideText(ExpressionParser::ParserDriver& driver, const std::string& text) {
    std::unique_ptr<ASTNode> tree(driver.poParseExpression(text));
    const ExpressionParser::SyntaxError* error = driver.poGetSyntaxError();
    if (error == nullptr) return;
    if (tree) fail("an error beside a tree", text, 0);
    if (error->oBegin.u64Offset > error->oEnd.u64Offset || error->oEnd.u64Offset > text.size()) {
        fail("error span outside the text", text, error->oBegin.u64Offset);
    }
    if (error->oUnexpected.empty() == error->oInvalidCellName.empty()) fail("error without a cause", text, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kLargestInput) return -1;
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Tokens and references write nothing; the parse below may.
    static std::ostringstream captured;
    captured.str(std::string());
    std::streambuf* saved = std::cerr.rdbuf(captured.rdbuf());
    tokensTile(text);
    referencesReadBack(text);
    const bool wroteNothing = captured.str().empty();
    std::cerr.rdbuf(saved);
    if (!wroteNothing) fail("tokens or references wrote to standard error", text, 0);
    saved = std::cerr.rdbuf(captured.rdbuf());
    static ExpressionParser::ParserDriver driver;
    syntaxErrorInsideText(driver, text.empty() || text[0] == '=' ? text : "=" + text);
    std::cerr.rdbuf(saved);
    return 0;
}
