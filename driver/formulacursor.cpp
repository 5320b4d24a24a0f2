#include "formulacursor.h"

#include "formulatokenstream.h"

namespace ExpressionParser {
namespace {

// An open parenthesis before the cursor: a function call's, or a group's.
struct OpenParenthesis {
    bool call;
    std::uint64_t nameBegin;
    std::uint64_t nameEnd;
    std::int32_t argument;
};

bool startsWithIgnoringCase(const std::string& name, std::string_view prefix) {
    if (prefix.size() > name.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        const char c = prefix[i] >= 'a' && prefix[i] <= 'z' ? static_cast<char>(prefix[i] - 'a' + 'A') : prefix[i];
        if (c != name[i]) return false;
    }
    return true;
}

// After these an operand may begin, so any function name fits.
bool operandMayFollow(const FormulaToken& token) {
    switch (token.oDetail) {
        case TokenDetail::Start:
        case TokenDetail::Comparison:
        case TokenDetail::Arithmetic:
        case TokenDetail::Argument:
        case TokenDetail::Open:
            return true;
        default:
            return false;
    }
}

void addCompletions(std::string_view prefix, std::vector<std::string>& completions) {
    for (const FunctionEntry& entry : FunctionCatalogue::oGetFunctions()) {
        if (startsWithIgnoringCase(entry.oName, prefix)) completions.push_back(entry.oName);
    }
    if (startsWithIgnoringCase("INPUT", prefix)) completions.push_back("INPUT");
}

}  // namespace

CursorHelp FormulaCursor::oGetHelp(const std::string& text, std::uint64_t u64Offset) {
    const std::uint64_t cursor = u64Offset < text.size() ? u64Offset : text.size();
    CursorHelp help{false, FormulaToken{}, nullptr, -1, false, {}};
    std::vector<OpenParenthesis> open;
    FormulaTokenStream stream(text);
    FormulaToken token{};
    FormulaToken before{};  // the last token that ends at or before the cursor
    bool hasBefore = false;
    Parser::symbol_kind_type symbol{};
    while (stream.next(token, symbol)) {
        if (token.u64Begin >= cursor && (help.bHasToken || token.u64Begin > cursor)) break;
        if (token.u64Begin == cursor || token.u64End >= cursor) {
            help.bHasToken = true;
            help.oToken = token;
            if (token.u64Begin == cursor) break;
        }
        if (token.u64End > cursor || help.bInText) continue;
        switch (token.oDetail) {
            case TokenDetail::Unterminated: help.bInText = true; break;
            case TokenDetail::FormulaEnd: open.clear(); break;
            case TokenDetail::Open: {
                const bool call = hasBefore && before.oKind == TokenKind::Function;
                open.push_back(OpenParenthesis{call, before.u64Begin, before.u64End, 0});
                break;
            }
            case TokenDetail::Close:
                if (!open.empty()) open.pop_back();
                break;
            case TokenDetail::Argument:
                if (!open.empty()) ++open.back().argument;
                break;
            default: break;
        }
        before = token;
        hasBefore = true;
    }
    const FormulaToken& at = help.oToken;
    const bool inside = help.bHasToken && at.u64Begin < cursor && cursor < at.u64End;
    if (inside && (at.oKind == TokenKind::Text || at.oKind == TokenKind::Input)) help.bInText = true;
    for (auto call = open.rbegin(); call != open.rend(); ++call) {
        if (!call->call) continue;
        help.poFunction = FunctionCatalogue::poFind(text.substr(call->nameBegin, call->nameEnd - call->nameBegin));
        help.s32Argument = call->argument;
        break;
    }
    if (help.bInText) return help;
    const bool typing = help.bHasToken && at.u64Begin < cursor &&
                        (at.oKind == TokenKind::Name || at.oKind == TokenKind::Function);
    if (typing) {
        addCompletions(std::string_view(text).substr(at.u64Begin, cursor - at.u64Begin), help.oCompletions);
    } else if (hasBefore && operandMayFollow(before)) {
        addCompletions("", help.oCompletions);
    }
    return help;
}

}  // namespace ExpressionParser
