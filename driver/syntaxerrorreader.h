#ifndef CELLFORMULA_SYNTAXERRORREADER_H
#define CELLFORMULA_SYNTAXERRORREADER_H

#include <cstddef>
#include <string>

#include "location.hh"
#include "syntaxerror.h"

namespace ExpressionParser {

// Turns the parser's located message, or the driver's invalid-cell-name
// message, into a SyntaxError. `parsed` is the text the parser read, which
// may carry an "=" of `prefixLength` bytes that the host did not write.
class SyntaxErrorReader {
public:
    SyntaxErrorReader(const std::string& parsed, std::size_t prefixLength);

    SyntaxError fromParserMessage(const location& where, const std::string& message) const;

    // False when `message` is not the invalid-cell-name message.
    bool fromRangeMessage(const std::string& message, SyntaxError& error) const;

private:
    SourcePosition positionOf(const position& where) const;

    const std::string& parsed_;
    std::size_t prefixLength_;
};

}  // namespace ExpressionParser

#endif
