#include "formulatokens.h"

#include "cellname.h"
#include "formulatokenstream.h"

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

// The detail that a symbol always has; the name, "=", the invalid token and
// the end of the text depend on the token's bytes or its place.
constexpr TokenDetail fixedDetailOf(Parser::symbol_kind_type symbol) {
    switch (symbol) {
        case Symbol::S_INTEGER: return TokenDetail::Integer;
        case Symbol::S_DOUBLE: return TokenDetail::Double;
        case Symbol::S_TEXTLITERAL: return TokenDetail::Text;
        case Symbol::S_INPUT: return TokenDetail::Input;
        case Symbol::S_EOL: return TokenDetail::Line;
        case Symbol::S_YYEOF: return TokenDetail::FormulaEnd;
        case Symbol::S_LE:
        case Symbol::S_GE:
        case Symbol::S_49_:  // '>'
        case Symbol::S_50_:  // '<'
        case Symbol::S_51_:  // '='
            return TokenDetail::Comparison;
        case Symbol::S_44_: return TokenDetail::Argument;  // ';'
        case Symbol::S_45_: return TokenDetail::Range;     // ':'
        case Symbol::S_39_: return TokenDetail::Open;      // '('
        case Symbol::S_40_: return TokenDetail::Close;     // ')'
        default: break;
    }
    switch (kindOf(symbol)) {
        case TokenKind::Operator: return TokenDetail::Arithmetic;
        case TokenKind::Function: return TokenDetail::Function;
        case TokenKind::Name: return TokenDetail::Variable;
        default: return TokenDetail::Character;
    }
}

struct DetailTable {
    TokenDetail details[Parser::YYNTOKENS]{};

    constexpr DetailTable() {
        for (int symbol = 0; symbol < Parser::YYNTOKENS; ++symbol) {
            details[symbol] = fixedDetailOf(static_cast<Parser::symbol_kind_type>(symbol));
        }
    }
};

constexpr DetailTable kDetails;

}  // namespace

TokenDetail FormulaTokenStream::detailOf(const ScannedToken& token) const {
    switch (token.symbol) {
        case Symbol::S_STRING: {
            SpreadSheetHelper::CellName cell;
            const std::string_view name(text_.data() + token.begin, token.end - token.begin);
            return SpreadSheetHelper::readCellName(name, cell) ? TokenDetail::Cell : TokenDetail::Variable;
        }
        case Symbol::S_51_:  // '='
            return formulaBegins_ ? TokenDetail::Start : TokenDetail::Comparison;
        case Symbol::S_YYUNDEF:
            // The scanner reads a double quote alone only when no second one follows.
            return text_[token.begin] == '"' ? TokenDetail::Unterminated : TokenDetail::Character;
        default:
            return kDetails.details[token.symbol];
    }
}

bool FormulaTokenStream::next(FormulaToken& token, Parser::symbol_kind_type& symbol) {
    ScannedToken scanned{};
    if (!reader_.next(scanned)) return false;
    symbol = scanned.symbol;
    token.oKind = kKinds.kinds[scanned.symbol];
    token.oDetail = detailOf(scanned);
    formulaBegins_ = scanned.symbol == Symbol::S_YYEOF;
    token.u64Begin = scanned.begin;
    token.u64End = scanned.end;
    const TextUnits begin = units_.at(scanned.begin);
    token.u64BeginUtf16 = begin.utf16;
    token.u64BeginCodePoint = begin.codePoints;
    const TextUnits end = units_.at(scanned.end);
    token.u64EndUtf16 = end.utf16;
    token.u64EndCodePoint = end.codePoints;
    return true;
}

std::vector<FormulaToken> FormulaTokens::oGetTokens(const std::string& text) {
    std::vector<FormulaToken> tokens;
    // Formulas hold a token every few bytes; room for that spares most regrowth.
    tokens.reserve(text.size() / 4 + 1);
    vGetTokens(text, tokens);
    return tokens;
}

void FormulaTokens::vGetTokens(const std::string& text, std::vector<FormulaToken>& tokens) {
    tokens.clear();
    FormulaTokenStream stream(text);
    Parser::symbol_kind_type symbol{};
    // Filled in place: a whole token built aside and copied in one wide load
    // stalls on its narrow kind store, at every token.
    for (FormulaToken* added = &tokens.emplace_back(); stream.next(*added, symbol); added = &tokens.emplace_back()) {
    }
    tokens.pop_back();
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

std::string FormulaTokens::oGetDetailName(TokenDetail detail) {
    switch (detail) {
        case TokenDetail::Integer: return "integer";
        case TokenDetail::Double: return "double";
        case TokenDetail::Text: return "text";
        case TokenDetail::Cell: return "cell";
        case TokenDetail::Variable: return "variable";
        case TokenDetail::Function: return "function";
        case TokenDetail::Input: return "input";
        case TokenDetail::Start: return "start";
        case TokenDetail::Comparison: return "comparison";
        case TokenDetail::Arithmetic: return "arithmetic";
        case TokenDetail::Argument: return "argument";
        case TokenDetail::Range: return "range";
        case TokenDetail::Open: return "open";
        case TokenDetail::Close: return "close";
        case TokenDetail::Line: return "line";
        case TokenDetail::FormulaEnd: return "formula-end";
        case TokenDetail::Unterminated: return "unterminated";
        case TokenDetail::Character: return "character";
    }
    return "character";
}

}  // namespace ExpressionParser
