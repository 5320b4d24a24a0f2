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

// One token of a formula text: its kind and its bytes [u64Begin, u64End).
// It holds no text of its own, which keeps a long formula's token list small.
struct FormulaToken {
    TokenKind oKind;
    std::uint64_t u64Begin;
    std::uint64_t u64End;

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
};

}  // namespace ExpressionParser

#endif
