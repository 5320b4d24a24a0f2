#ifndef CELLFORMULA_SYNTAXERROR_H
#define CELLFORMULA_SYNTAXERROR_H

#include <cstdint>
#include <string>
#include <vector>

namespace ExpressionParser {

// A place in a formula: line and column as the error text prints them (from
// 1, columns counting bytes), and the byte offset into the text that was
// given to the driver.
struct SourcePosition {
    std::int32_t s32Line;
    std::int32_t s32Column;
    std::uint64_t u64Offset;
};

// Why a parse failed, as data. For a syntax error: the span of the unexpected
// token (end exclusive) and the names that the error text quotes; the
// expected names are listed only when there are at most four, as in the text.
// For a range with a corner that is no cell name: that name and its span,
// with no unexpected or expected names.
struct SyntaxError {
    SourcePosition oBegin;
    SourcePosition oEnd;
    std::string oUnexpected;
    std::vector<std::string> oExpected;
    std::string oInvalidCellName;
};

}  // namespace ExpressionParser

#endif
