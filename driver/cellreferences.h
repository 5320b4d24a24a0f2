#ifndef CELLFORMULA_CELLREFERENCES_H
#define CELLFORMULA_CELLREFERENCES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ExpressionParser {

// One cell name inside a formula: where it stands, the cell it names
// (indices from 0: "B3" is column 1, row 2) and its "$" markers. Spans are
// given in bytes and, as the tokens give them, in UTF-16 code units and code
// points.
struct CellCorner {
    std::uint64_t u64Begin;
    std::uint64_t u64End;
    std::int32_t s32Column;
    std::int32_t s32Row;
    bool bColumnAbsolute;
    bool bRowAbsolute;
    std::uint64_t u64BeginUtf16 = 0;
    std::uint64_t u64EndUtf16 = 0;
    std::uint64_t u64BeginCodePoint = 0;
    std::uint64_t u64EndCodePoint = 0;
};

// A reference to one cell or to a range. A single cell has both corners
// equal, so a host can treat every reference as a rectangle; a range keeps
// its corners as written (not ordered).
struct CellReference {
    std::uint64_t u64Begin;
    std::uint64_t u64End;
    bool bIsRange;
    CellCorner oFrom;
    CellCorner oTo;
    std::uint64_t u64BeginUtf16 = 0;      // the span in UTF-16 code units and in code points
    std::uint64_t u64EndUtf16 = 0;
    std::uint64_t u64BeginCodePoint = 0;
    std::uint64_t u64EndCodePoint = 0;

    // The reference as written in the formula it was read from ("$A$1", "A1 : B3").
    std::string_view oText(std::string_view formula) const { return formula.substr(u64Begin, u64End - u64Begin); }
};

class CellReferences {
public:
    // The cell references of a formula in text order, read the way the parser
    // reads them: a name token that is a cell name is a reference, and a cell
    // name, ":" and a cell name (blanks allowed between) are one range.
    // Nothing inside a quoted text or INPUT("...") is a reference, nor are
    // names that are no cell names (named values, "A", "A0") or function
    // keywords. A corner whose partner is no cell name ("A1:XYZ") is listed
    // as a single cell. Works on incomplete texts too; never throws (beyond
    // running out of memory) and writes nothing.
    static std::vector<CellReference> oGetReferences(const std::string& formula);
    // The same into a vector that the caller keeps between calls (cleared first).
    static void vGetReferences(const std::string& formula, std::vector<CellReference>& references);
};

}  // namespace ExpressionParser

#endif
