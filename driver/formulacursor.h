#ifndef CELLFORMULA_FORMULACURSOR_H
#define CELLFORMULA_FORMULACURSOR_H

#include <cstdint>
#include <string>
#include <vector>

#include "formulatokens.h"
#include "functioncatalogue.h"

namespace ExpressionParser {

// What an editor shows beside the cursor: the token there, the function call
// the cursor is in, and the names that may be typed there.
struct CursorHelp {
    // The token at the cursor: the one that holds it or ends just before it
    // (the word being typed), else the one that begins at it.
    bool bHasToken;
    FormulaToken oToken;
    // The innermost function call around the cursor (its catalogue entry, or
    // null) and the argument the cursor is in, counted from 0 (-1 without a call).
    const FunctionEntry* poFunction;
    std::int32_t s32Argument;
    // The cursor is inside a text: a quoted one, a named input, or anything
    // after a double quote that no second one closes.
    bool bInText;
    // Function names and keywords (in capitals) that begin with the word before
    // the cursor, in any case; all of them where an operand may begin; none
    // inside a text or where no name may stand.
    std::vector<std::string> oCompletions;
};

class FormulaCursor {
public:
    // Help at byte offset `u64Offset` of `text` (an offset past the end is the
    // end). Reads the text only up to the cursor's token; keeps no state, never
    // throws (beyond running out of memory) and writes nothing.
    static CursorHelp oGetHelp(const std::string& text, std::uint64_t u64Offset);
};

}  // namespace ExpressionParser

#endif
