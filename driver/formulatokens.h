#ifndef CELLFORMULA_FORMULATOKENS_H
#define CELLFORMULA_FORMULATOKENS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ExpressionParser {

// What a token is, as an editor colours it; each kind is a group of the
// parser's own tokens.
enum class TokenKind : std::uint8_t {
    Number,       // "integer" and "double"
    Text,         // a quoted text
    Name,         // a variable or cell name (STRING)
    Function,     // a function keyword: SIN, SUM, IF, PI, LEFT, ...
    Input,        // a named input, INPUT("name")
    Operator,     // + - * / % ^ = < > <= >=
    Separator,    // ; and :
    Parenthesis,  // ( and )
    End,          // a newline, or a byte 0, which the parser reads as the end of the formula
    Invalid,      // any byte the grammar has no token for, and an unterminated double quote
};

// What a token is within its kind, for finer colouring and for help while
// typing; each detail belongs to exactly one kind.
enum class TokenDetail : std::uint8_t {
    Integer,       // number: digits alone
    Double,        // number: digits with a point
    Text,          // text
    Cell,          // name: a cell name such as $A$1 or b7
    Variable,      // name: any other name, a named value the host supplies
    Function,      // function
    Input,         // input
    Start,         // operator: the "=" that begins a formula
    Comparison,    // operator: = < > <= >= after the start
    Arithmetic,    // operator: + - * / % ^
    Argument,      // separator: ";" between function arguments
    Range,         // separator: ":" between the corners of a range
    Open,          // parenthesis: (
    Close,         // parenthesis: )
    Line,          // end: a newline
    FormulaEnd,    // end: a byte 0
    Unterminated,  // invalid: a double quote that no second one closes; the rest of the text is a text being typed
    Character,     // invalid: any other byte
};

// One token of a formula text: its kind, its detail and its span [begin, end)
// counted three ways: in bytes (u64Begin, u64End), in UTF-16 code units as web
// and Qt editors count, and in code points. A byte that is not part of
// well-formed UTF-8 counts as one unit, as its U+FFFD replacement would; an
// offset inside a character's bytes (a token of one byte of a euro sign outside a
// text) counts the whole character. It holds no text of its own, which keeps
// a long formula's token list small.
struct FormulaToken {
    TokenKind oKind;
    TokenDetail oDetail = TokenDetail::Character;  // beside the kind, so that both share one word
    std::uint64_t u64Begin;
    std::uint64_t u64End;
    std::uint64_t u64BeginUtf16 = 0;
    std::uint64_t u64EndUtf16 = 0;
    std::uint64_t u64BeginCodePoint = 0;
    std::uint64_t u64EndCodePoint = 0;

    // The token's bytes in the text it was read from.
    std::string_view oText(std::string_view formula) const { return formula.substr(u64Begin, u64End - u64Begin); }
};

class FormulaTokens {
public:
    // Splits any text, complete or as typed so far, into the tokens that the
    // parser reads, in order. Blanks, tabs and carriage returns between tokens
    // belong to no token; every other byte is in exactly one token. An
    // unterminated double quote is an Invalid token of its own and the bytes
    // after it are tokens as usual, just as the parser sees them. The text is
    // read as given: no "=" is put before a bare number. Never throws (beyond
    // running out of memory) and writes nothing.
    static std::vector<FormulaToken> oGetTokens(const std::string& text);
    // The same into a vector that the caller keeps between calls (it is
    // cleared first), so an editor splitting at every keystroke allocates
    // nothing once the vector has grown.
    static void vGetTokens(const std::string& text, std::vector<FormulaToken>& tokens);

    // The kind's name in lower case: "number", "text", "name", "function",
    // "input", "operator", "separator", "parenthesis", "end", "invalid".
    static std::string oGetKindName(TokenKind kind);
    // The detail's name in lower case: "integer", "double", "text", "cell",
    // "variable", "function", "input", "start", "comparison", "arithmetic",
    // "argument", "range", "open", "close", "line", "formula-end",
    // "unterminated", "character".
    static std::string oGetDetailName(TokenDetail detail);
};

}  // namespace ExpressionParser

#endif
