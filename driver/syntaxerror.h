#ifndef CELLFORMULA_SYNTAXERROR_H
#define CELLFORMULA_SYNTAXERROR_H

#include <cstdint>
#include <string>
#include <vector>

namespace ExpressionParser {

// A place in a formula: line and column as the error text prints them (from
// 1, columns counting bytes), and the offset into the text that was given to
// the driver in bytes, in UTF-16 code units and in code points (counted as
// the editor tokens count them).
struct SourcePosition {
    std::int32_t s32Line;
    std::int32_t s32Column;
    std::uint64_t u64Offset;
    std::uint64_t u64Utf16Offset = 0;
    std::uint64_t u64CodePointOffset = 0;
};

// Why a parse failed, as data. For a syntax error: the span of the unexpected
// token (end exclusive) and the names that the error text quotes; the
// expected names are listed only when there are at most four, as in the text.
// For a range with a corner that is no cell name: that name and its span,
// with no unexpected or expected names.
//
// bIncomplete tells a text that is only unfinished (text appended to it could
// still make it a formula: "=SUM(A1;", "=\"abc") from one that is wrong
// ("=SUM(A1;;", "=1+*2"), so that an editor underlines only the latter while
// the user types. oHint is a plain-language hint for a common mistake (a
// function name in mixed case, "," between arguments, a missing ")"), or
// empty; the error text itself never changes.
struct SyntaxError {
    SourcePosition oBegin;
    SourcePosition oEnd;
    std::string oUnexpected;
    std::vector<std::string> oExpected;
    std::string oInvalidCellName;
    bool bIncomplete = false;
    std::string oHint;
};

}  // namespace ExpressionParser

#endif
