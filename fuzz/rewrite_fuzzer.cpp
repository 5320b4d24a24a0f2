// Arbitrary bytes through the reference rewriting: every operation returns for
// any text and any numbers, and edits that keep every reference on the sheet
// can be undone.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "parserdriver.h"

namespace {

using ExpressionParser::ParserDriver;

// Rewriting is one linear pass; this only keeps a single input quick.
constexpr std::size_t kLargestInput = 65536;

[[noreturn]] void fail(const std::string& what, const std::string& formula, const std::string& got) {
    std::fprintf(stderr, "rewrite_fuzzer: %s\nformula: %s\ngot:     %s\n", what.c_str(), formula.c_str(),
                 got.c_str());
    std::abort();
}

bool lostReference(const std::string& text) { return text.find("#REF") != std::string::npos; }

// Numbers at and around every boundary of the coordinate arithmetic.
const int kNumbers[] = {0, 1, -1, 2, 3, 26, -27, 702, 1000000, 3000000, INT_MAX, INT_MIN, INT_MAX - 1};

void everyOperationReturns(const std::string& formula) {
    constexpr std::size_t count = sizeof kNumbers / sizeof kNumbers[0];
    for (std::size_t i = 0; i < count; ++i) {
        const int a = kNumbers[i];
        const int b = kNumbers[count - 1 - i];
        ParserDriver::oChangeCellNamesAfterRowInsertion(formula, a);
        ParserDriver::oChangeCellNamesAfterColumnInsertion(formula, a);
        ParserDriver::oChangeCellNamesAfterRowDeletion(formula, a);
        ParserDriver::oChangeCellNamesAfterColumnDeletion(formula, a);
        ParserDriver::oOffsetCellsNames(formula, a, b);
        ParserDriver::oOffsetCellsNames(formula, b, a);
        ParserDriver::oChangeCellNames(formula, a, b, b, a);
    }
}

// Offsetting by (-r,-c) undoes (r,c), and deleting a row or column undoes
// inserting it, as long as no reference left the sheet on the way. The text
// comes back as an offset by (0,0) writes it: a "$" between column letters
// reads as the row's marker ("X$A1" is column XA with absolute row 1) and is
// written after the letters, so only a text already in that form comes back
// byte for byte.
void editsCanBeUndone(const std::string& formula) {
    const std::string written = ParserDriver::oOffsetCellsNames(formula, 0, 0);
    if (ParserDriver::oOffsetCellsNames(written, 0, 0) != written) fail("(0,0) is not stable", formula, written);
    if (ParserDriver::oChangeCellNames(formula, 5, 5, 0, 0) != written) {
        fail("a change of 0 differs from an offset of 0", formula, ParserDriver::oChangeCellNames(formula, 5, 5, 0, 0));
    }

    const int offsets[][2] = {{1, 1}, {-1, -1}, {0, 27}, {999, -3}, {-3, 702}, {100000, 18278}};
    for (const auto& offset : offsets) {
        const std::string moved = ParserDriver::oOffsetCellsNames(formula, offset[0], offset[1]);
        if (lostReference(moved)) continue;
        const std::string back = ParserDriver::oOffsetCellsNames(moved, -offset[0], -offset[1]);
        if (back != written) fail("offset and its inverse", formula, moved + "  ->  " + back);
    }
    for (const int at : {0, 1, 2, 10, 26}) {
        const std::string rowAdded = ParserDriver::oChangeCellNamesAfterRowInsertion(formula, at);
        if (!lostReference(rowAdded) &&
            ParserDriver::oChangeCellNamesAfterRowDeletion(rowAdded, at) != written) {
            fail("row deletion after insertion", formula, rowAdded);
        }
        const std::string columnAdded = ParserDriver::oChangeCellNamesAfterColumnInsertion(formula, at);
        if (!lostReference(columnAdded) &&
            ParserDriver::oChangeCellNamesAfterColumnDeletion(columnAdded, at) != written) {
            fail("column deletion after insertion", formula, columnAdded);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kLargestInput) return -1;
    const std::string text(reinterpret_cast<const char*>(data), size);
    everyOperationReturns(text);

    if (text.empty() || text[0] != '=') {
        // Only formulas are rewritten.
        if (ParserDriver::oOffsetCellsNames(text, 1, 1) != text) fail("a non-formula changed", text, "");
        editsCanBeUndone("=" + text);
    } else {
        editsCanBeUndone(text);
    }

    const std::size_t found = text.find("input(");
    const std::int16_t expected = found <= INT16_MAX ? static_cast<std::int16_t>(found) : -1;
    if (ExpressionParser::s16FindTextIndex(text, "input(", 0) != expected) fail("s16FindTextIndex", text, "");
    return 0;
}
