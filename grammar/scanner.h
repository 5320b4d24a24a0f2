#ifndef CELLFORMULA_SCANNER_H
#define CELLFORMULA_SCANNER_H

#include <istream>
#include <ostream>

// Several flex scanners may share a program: rename the engine class before
// FlexLexer.h declares it, and only once per translation unit.
#if !defined(yyFlexLexerOnce)
#undef yyFlexLexer
#define yyFlexLexer ExpressionFlexLexer
#include <FlexLexer.h>
#undef yyFlexLexer
#endif

#include "location.hh"
#include "parser.hh"

namespace ExpressionParser {

// Turns the text of one formula into tokens for the parser.
class Scanner : public ExpressionFlexLexer {
public:
    Scanner(std::istream* in, std::ostream* out);
    ~Scanner() override;

    // Scans the next token: returns its code, fills its value and advances
    // its location.
    virtual int lex(Parser::semantic_type* lval, location* loc);

    void vSetDebug(bool enabled);
};

}  // namespace ExpressionParser

#endif
