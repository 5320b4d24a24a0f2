#ifndef CELLFORMULA_SCANNER_H
#define CELLFORMULA_SCANNER_H

#include <cstddef>
#include <deque>
#include <istream>
#include <ostream>
#include <string>

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

    // Scans `prefix` and then `text` from the next restart on, instead of the
    // stream, reading both in place: the characters are copied once, into the
    // engine's buffer. `text` must outlive the scan.
    void vSetText(const char* prefix, const std::string& text);

    // Whether tokens get their values (on by default). A reader that needs
    // only the tokens' kinds and places turns it off and saves a conversion
    // per number and an allocation per name.
    void vKeepValues(bool keep) { keepValues_ = keep; }

protected:
    int LexerInput(char* buffer, int capacity) override;

private:
    // A token decided together with an earlier one, returned by the next call.
    struct PendingToken {
        int code;
        std::string text;
        location where;
    };

    // A new string holding the text, or null when values are not kept.
    std::string* keptValue(const char* text, std::size_t length) const {
        return keepValues_ ? new std::string(text, length) : nullptr;
    }
    // Starts the next token where the last one ended, as location::step() does
    // but field by field: step() reloads the whole end position in one wide load
    // right after the last token's narrow column store, which the processor
    // cannot forward, and that stall took a third of the time of a scan. The
    // line is copied only when it changed, so that no compiler merges it with
    // the column into one wider load again.
    static void stepLocation(location* where) {
        where->begin.filename = where->end.filename;
        if (where->begin.line != where->end.line) where->begin.line = where->end.line;
        where->begin.column = where->end.column;
    }
    int nextPending(Parser::semantic_type* value, location* where);
    // The name INPUT (or input) that begins body_, as a token of its own.
    int returnWord(Parser::semantic_type* value, location* where);
    // Scans body_ from `from` on again once the input has ended.
    void replay(std::size_t from);

    std::deque<PendingToken> pending_;
    // The raw text of a quoted text or INPUT call read in pieces so far.
    std::string body_;
    std::string replay_;
    std::size_t replayAt_ = 0;
    const char* prefix_ = "";
    std::size_t prefixLeft_ = 0;
    const char* text_ = nullptr;
    std::size_t textLeft_ = 0;
    bool keepValues_ = true;
};

}  // namespace ExpressionParser

#endif
