#ifndef CELLFORMULA_FORMULATOKENSTREAM_H
#define CELLFORMULA_FORMULATOKENSTREAM_H

#include <string>

#include "formulatokens.h"
#include "textunits.h"
#include "tokenreader.h"

namespace ExpressionParser {

// The editor's tokens one at a time: the scanner's tokens with their kind,
// their detail and their spans in bytes, UTF-16 units and code points. Tokens,
// cursor help and syntax hints all read a text through it.
class FormulaTokenStream {
public:
    // `text` must outlive the stream.
    explicit FormulaTokenStream(const std::string& text) : text_(text), reader_(text), units_(text) {}

    // The next token and the parser's symbol for it; false at the end of the text.
    bool next(FormulaToken& token, Parser::symbol_kind_type& symbol);

private:
    TokenDetail detailOf(const ScannedToken& token) const;

    const std::string& text_;
    TokenReader reader_;
    TextUnitCounter units_;
    // The start of the text and a byte 0 both begin a formula, whose "=" is its start.
    bool formulaBegins_ = true;
};

}  // namespace ExpressionParser

#endif
