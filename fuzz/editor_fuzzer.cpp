// Arbitrary bytes through the editor operations: token spans tile the text
// with only blanks between them, every listed reference reads back as the
// cell it names, a failed parse locates its error inside the text, every
// UTF-16 and code-point offset agrees with a plain decoding of the text, and
// the cursor help at any offset stays inside the text.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <algorithm>
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

// The reference conversion, written apart from the library's: decode the whole
// text into characters (a byte outside well-formed UTF-8 is one character of
// one UTF-16 unit) and count, for every byte offset, the units and characters
// that begin before it.
struct Units {
    std::vector<std::uint64_t> utf16;
    std::vector<std::uint64_t> codePoints;
};

std::size_t wellFormedLength(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(text[i])); };
    const unsigned lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xC2 && lead < 0xE0 ? 2 : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
    if (length <= 1 || at + length > text.size()) return 1;
    std::uint32_t codePoint = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 1;
        codePoint = (codePoint << 6) | (byte(at + i) & 0x3F);
    }
    const std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < smallest[length] || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) return 1;
    return length;
}

Units referenceUnits(const std::string& text) {
    Units units{std::vector<std::uint64_t>(text.size() + 1), std::vector<std::uint64_t>(text.size() + 1)};
    std::uint64_t utf16 = 0;
    std::uint64_t codePoints = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = wellFormedLength(text, at);
        utf16 += length == 4 ? 2 : 1;
        ++codePoints;
        // An offset inside the character counts the whole character.
        for (std::size_t i = 1; i <= length; ++i) {
            units.utf16[at + i] = utf16;
            units.codePoints[at + i] = codePoints;
        }
        at += length;
    }
    return units;
}

void unitsAgree(const std::string& text, const Units& units, std::uint64_t byte, std::uint64_t utf16,
                std::uint64_t codePoints) {
    if (byte > text.size() || units.utf16[byte] != utf16 || units.codePoints[byte] != codePoints) {
        fail("UTF-16 or code-point offset disagrees with the reference", text, byte);
    }
}

void tokenUnitsAgree(const std::string& text, const Units& units) {
    std::uint64_t last16 = 0;
    std::uint64_t lastCp = 0;
    for (const FormulaToken& token : ExpressionParser::FormulaTokens::oGetTokens(text)) {
        unitsAgree(text, units, token.u64Begin, token.u64BeginUtf16, token.u64BeginCodePoint);
        unitsAgree(text, units, token.u64End, token.u64EndUtf16, token.u64EndCodePoint);
        if (token.u64BeginUtf16 < last16 || token.u64BeginCodePoint < lastCp) fail("offsets go back", text, token.u64Begin);
        last16 = token.u64EndUtf16;
        lastCp = token.u64EndCodePoint;
    }
}

// Cursor help at a few offsets, one past the end and one far beyond included.
void cursorHelpHolds(const std::string& text) {
    const std::uint64_t offsets[] = {0, text.size() / 2, text.size(), text.size() + 1, UINT64_MAX};
    for (const std::uint64_t offset : offsets) {
        const ExpressionParser::CursorHelp help = ExpressionParser::FormulaCursor::oGetHelp(text, offset);
        if (help.bHasToken && (help.oToken.u64End > text.size() || help.oToken.u64Begin > std::min<std::uint64_t>(offset, text.size()))) {
            fail("cursor token outside the text", text, help.oToken.u64Begin);
        }
        if ((help.poFunction == nullptr) != (help.s32Argument < 0)) fail("argument without a call", text, offset);
        if (help.bInText && !help.oCompletions.empty()) fail("completions inside a text", text, offset);
    }
}

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
    const Units units = referenceUnits(text);
    for (const CellReference& reference : ExpressionParser::CellReferences::oGetReferences(text)) {
        if (reference.u64Begin < previousEnd) fail("references out of order", text, reference.u64Begin);
        unitsAgree(text, units, reference.u64Begin, reference.u64BeginUtf16, reference.u64BeginCodePoint);
        unitsAgree(text, units, reference.u64End, reference.u64EndUtf16, reference.u64EndCodePoint);
        unitsAgree(text, units, reference.oTo.u64Begin, reference.oTo.u64BeginUtf16, reference.oTo.u64BeginCodePoint);
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

// The host's text is what the error's units count in, even when an "=" was put before a number.
void errorUnitsAgree(ExpressionParser::ParserDriver& driver, const std::string& text) {
    const ExpressionParser::SyntaxError* error = driver.poGetSyntaxError();
    if (error == nullptr) return;
    const Units units = referenceUnits(text);
    for (const auto* position : {&error->oBegin, &error->oEnd}) {
        unitsAgree(text, units, position->u64Offset, position->u64Utf16Offset, position->u64CodePointOffset);
    }
    if (error->bIncomplete && error->oUnexpected == "end of file" && error->oBegin.u64Offset != text.size()) {
        fail("incomplete before the end of the text", text, error->oBegin.u64Offset);
    }
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
    tokenUnitsAgree(text, referenceUnits(text));
    referencesReadBack(text);
    cursorHelpHolds(text);
    const bool wroteNothing = captured.str().empty();
    std::cerr.rdbuf(saved);
    if (!wroteNothing) fail("tokens or references wrote to standard error", text, 0);
    saved = std::cerr.rdbuf(captured.rdbuf());
    static ExpressionParser::ParserDriver driver;
    const std::string formula = text.empty() || text[0] == '=' ? text : "=" + text;
    syntaxErrorInsideText(driver, formula);
    errorUnitsAgree(driver, formula);
    std::cerr.rdbuf(saved);
    return 0;
}
