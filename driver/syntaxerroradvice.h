#ifndef CELLFORMULA_SYNTAXERRORADVICE_H
#define CELLFORMULA_SYNTAXERRORADVICE_H

#include <cstdint>
#include <string>

#include "syntaxerror.h"

namespace ExpressionParser {

// What a syntax error's data says beyond the parser's message: its offsets in
// UTF-16 units and code points, whether the text is only unfinished, and a
// hint for a person.
class SyntaxErrorAdvice {
public:
    // Completes `error`, found by the driver in `text` (the host's text), in
    // place. An unclosed quote is judged by parsing the text with the quote
    // closed, under the same range limit, on a driver of its own.
    static void addTo(const std::string& text, std::uint64_t maxRangeCells, SyntaxError& error);
};

}  // namespace ExpressionParser

#endif
