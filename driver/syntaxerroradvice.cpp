#include "syntaxerroradvice.h"

#include <memory>
#include <vector>

#include "cellname.h"
#include "formulatokenstream.h"
#include "functioncatalogue.h"
#include "parserdriver.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

struct Token {
    FormulaToken token;
    Parser::symbol_kind_type symbol;
};

// The tokens up to and including the unexpected one, which begins at `offset`
// (none for the end of the text), and the one after it.
std::vector<Token> tokensThrough(const std::string& text, std::uint64_t offset) {
    std::vector<Token> tokens;
    FormulaTokenStream stream(text);
    Token next{};
    bool pastOffset = false;
    while (stream.next(next.token, next.symbol)) {
        tokens.push_back(next);
        if (pastOffset) break;
        pastOffset = next.token.u64Begin >= offset;
    }
    return tokens;
}

bool isCellName(const std::string& name) {
    SpreadSheetHelper::CellName cell;
    return SpreadSheetHelper::readCellName(name, cell);
}

// True when `appended` after `text` gives a formula, or a text that more
// appended could still make one.
bool parsesWhenAppended(const std::string& text, const std::string& appended, std::uint64_t maxRangeCells) {
    const std::string longer = text + appended;
    ParserDriver driver;
    driver.vSetErrorStream(nullptr);
    driver.vSetMaxRangeCells(maxRangeCells);
    const std::unique_ptr<ASTNode> tree(driver.poParseExpression(longer));
    if (tree) return true;
    const SyntaxError* error = driver.poGetSyntaxError();
    return error != nullptr && error->oUnexpected == "end of file" && error->oBegin.u64Offset == longer.size();
}

std::string textOf(const std::string& text, const Token& token) { return std::string(token.token.oText(text)); }

bool isSign(const Token& token) {
    return token.symbol == Symbol::S_42_ || token.symbol == Symbol::S_43_;
}

// The open "(" of INPUT(" whose quote is never closed, when `at` is it.
bool opensUnclosedInput(const std::string& text, const std::vector<Token>& tokens, std::size_t at) {
    if (at == 0 || at + 1 >= tokens.size() || tokens[at].symbol != Symbol::S_39_) return false;
    const std::string name = textOf(text, tokens[at - 1]);
    return (name == "INPUT" || name == "input") && tokens[at - 1].token.u64End == tokens[at].token.u64Begin &&
           tokens[at + 1].token.oDetail == TokenDetail::Unterminated &&
           tokens[at].token.u64End == tokens[at + 1].token.u64Begin;
}

std::string hintFor(const std::string& text, const std::vector<Token>& tokens, std::size_t at) {
    const bool atEnd = at >= tokens.size();
    const Token* unexpected = atEnd ? nullptr : &tokens[at];
    const Token* previous = at > 0 && at <= tokens.size() ? &tokens[at - 1] : nullptr;
    if (atEnd) {
        long open = 0;
        for (const Token& token : tokens) open += token.symbol == Symbol::S_39_ ? 1 : token.symbol == Symbol::S_40_ ? -1 : 0;
        return open > 0 ? "A closing parenthesis \")\" is missing." : "";
    }
    if (unexpected->token.oDetail == TokenDetail::Unterminated) return "The text is not closed: a double quote is missing.";
    if (opensUnclosedInput(text, tokens, at)) return "The name of INPUT is not closed: write INPUT(\"name\").";
    const std::string written = textOf(text, *unexpected);
    if (written == ",") return "Arguments are separated by \";\", not \",\", and numbers are written with a point: 1.5.";
    if (previous != nullptr && unexpected->symbol == Symbol::S_39_ && previous->symbol == Symbol::S_STRING) {
        std::string capitals = textOf(text, *previous);
        for (char& c : capitals) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        if (FunctionCatalogue::poFind(capitals) != nullptr) {
            std::string small = capitals;
            for (char& c : small) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            return "Function names are written all in capitals or all in small letters: " + capitals + " or " + small + ".";
        }
        return "\"" + textOf(text, *previous) + "\" is not a function of this language.";
    }
    const bool alone = unexpected->symbol == Symbol::S_ATAN2 || unexpected->symbol == Symbol::S_TEXT ||
                       unexpected->symbol == Symbol::S_LEFT || unexpected->symbol == Symbol::S_RIGHT;
    if (alone) return written + " stands alone or in parentheses: 1+(" + written + "(...)).";
    if (previous != nullptr && previous->symbol == Symbol::S_41_ && isSign(*unexpected)) {
        return "A signed exponent needs parentheses: 2^(-1).";
    }
    if (previous != nullptr && isSign(*previous) &&
        (unexpected->token.oKind == TokenKind::Function || isSign(*unexpected))) {
        return "A sign before a function or another sign needs parentheses: -(SIN(1)), -(-1).";
    }
    if (previous != nullptr && previous->symbol == Symbol::S_50_ && unexpected->symbol == Symbol::S_49_) {
        return "There is no \"<>\" operator: write NOT(a=b).";
    }
    return "";
}

// The index of the unexpected token: the first that begins at the error.
std::size_t unexpectedIndex(const std::vector<Token>& tokens, std::uint64_t offset, bool atEndOfText) {
    if (atEndOfText) return tokens.size();
    std::size_t at = 0;
    while (at < tokens.size() && tokens[at].token.u64Begin < offset) ++at;
    return at;
}

}  // namespace

void SyntaxErrorAdvice::addTo(const std::string& text, std::uint64_t maxRangeCells, SyntaxError& error) {
    for (SourcePosition* position : {&error.oBegin, &error.oEnd}) {
        const TextUnits units = TextUnitCounter::of(text, position->u64Offset);
        position->u64Utf16Offset = units.utf16;
        position->u64CodePointOffset = units.codePoints;
    }
    error.bIncomplete = false;
    error.oHint.clear();
    if (!error.oInvalidCellName.empty()) {
        const std::string& name = error.oInvalidCellName;
        error.bIncomplete = error.oEnd.u64Offset == text.size() && (isCellName(name + "1") || isCellName(name + "A1"));
        error.oHint = "\"" + name + "\" is no cell name: a range joins two cell names, as in A1:B3.";
        return;
    }
    const bool atEndOfText = error.oUnexpected == "end of file" && error.oBegin.u64Offset == text.size();
    const std::vector<Token> tokens = tokensThrough(text, atEndOfText ? text.size() : error.oBegin.u64Offset);
    const std::size_t at = unexpectedIndex(tokens, error.oBegin.u64Offset, atEndOfText);
    error.oHint = hintFor(text, tokens, at);
    if (atEndOfText) {
        error.bIncomplete = true;
    } else if (at < tokens.size() && tokens[at].token.oDetail == TokenDetail::Unterminated) {
        error.bIncomplete = parsesWhenAppended(text, "\"", maxRangeCells);
    } else if (opensUnclosedInput(text, tokens, at)) {
        error.bIncomplete = parsesWhenAppended(text, "x\")", maxRangeCells);
    }
}

}  // namespace ExpressionParser
