#include "formulatokens.h"

#include "tokenreader.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

constexpr TokenKind kindOf(Parser::symbol_kind_type symbol) {
    switch (symbol) {
        case Symbol::S_YYEOF:
        case Symbol::S_EOL:
            return TokenKind::End;
        case Symbol::S_INTEGER:
        case Symbol::S_DOUBLE:
            return TokenKind::Number;
        case Symbol::S_STRING:
            return TokenKind::Name;
        case Symbol::S_TEXTLITERAL:
            return TokenKind::Text;
        case Symbol::S_INPUT:
            return TokenKind::Input;
        case Symbol::S_LE:
        case Symbol::S_GE:
        case Symbol::S_41_:  // '^'
        case Symbol::S_42_:  // '+'
        case Symbol::S_43_:  // '-'
        case Symbol::S_46_:  // '*'
        case Symbol::S_47_:  // '/'
        case Symbol::S_48_:  // '%'
        case Symbol::S_49_:  // '>'
        case Symbol::S_50_:  // '<'
        case Symbol::S_51_:  // '='
            return TokenKind::Operator;
        case Symbol::S_44_:  // ';'
        case Symbol::S_45_:  // ':'
            return TokenKind::Separator;
        case Symbol::S_39_:  // '('
        case Symbol::S_40_:  // ')'
            return TokenKind::Parenthesis;
        default:
            break;
    }
    // Every remaining token between the named ones and '(' is a function keyword.
    if (symbol >= Symbol::S_SIN && symbol <= Symbol::S_HEX2BIN) return TokenKind::Function;
    return TokenKind::Invalid;
}

// Kinds looked up by symbol number: tokens of mixed kinds defeat branch
// prediction in the switch.
struct KindTable {
    TokenKind kinds[Parser::YYNTOKENS]{};

    constexpr KindTable() {
        for (int symbol = 0; symbol < Parser::YYNTOKENS; ++symbol) {
            kinds[symbol] = kindOf(static_cast<Parser::symbol_kind_type>(symbol));
        }
    }
};

constexpr KindTable kKinds;

}  // namespace

std::vector<FormulaToken> FormulaTokens::oGetTokens(const std::string& text) {
    std::vector<FormulaToken> tokens;
    // Formulas hold a token every few bytes; room for that spares most regrowth.
    tokens.reserve(text.size() / 4 + 1);
    vGetTokens(text, tokens);
    return tokens;
}

void FormulaTokens::vGetTokens(const std::string& text, std::vector<FormulaToken>& tokens) {
    tokens.clear();
    TokenReader reader(text);
    ScannedToken token{};
    while (reader.next(token)) {
        // Field by field into the vector: a whole token built aside and copied
        // in one wide load stalls on its narrow kind store, at every token.
        FormulaToken& added = tokens.emplace_back();
        added.oKind = kKinds.kinds[token.symbol];
        added.u64Begin = token.begin;
        added.u64End = token.end;
    }
}

std::string FormulaTokens::oGetKindName(TokenKind kind) {
    switch (kind) {
        case TokenKind::Number: return "number";
        case TokenKind::Text: return "text";
        case TokenKind::Name: return "name";
        case TokenKind::Function: return "function";
        case TokenKind::Input: return "input";
        case TokenKind::Operator: return "operator";
        case TokenKind::Separator: return "separator";
        case TokenKind::Parenthesis: return "parenthesis";
        case TokenKind::End: return "end";
        case TokenKind::Invalid: return "invalid";
    }
    return "invalid";
}

}  // namespace ExpressionParser
