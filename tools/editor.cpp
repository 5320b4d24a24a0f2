// The editor subcommands: the tokens of each formula and its cell references,
// plain or as JSON, and the syntax error object of the evaluating JSON output.
#include <functional>
#include <ostream>
#include <string>

#include <cellformula/cellreferences.h>
#include <cellformula/formulacursor.h>
#include <cellformula/formulatokens.h>

#include "cli.h"

namespace cellformula::cli {

namespace {

using ExpressionParser::CellCorner;
using ExpressionParser::CellReference;
using ExpressionParser::FormulaToken;

std::string offsets(std::uint64_t begin, std::uint64_t end) {
    return std::to_string(begin) + " " + std::to_string(end);
}

// "3,2" for D3, with "$" before an absolute part: "$3,$2".
std::string cornerText(const CellCorner& corner) {
    return std::string(corner.bColumnAbsolute ? "$" : "") + std::to_string(corner.s32Column) + "," +
           (corner.bRowAbsolute ? "$" : "") + std::to_string(corner.s32Row);
}

// A span in bytes, UTF-16 units and code points, as JSON members.
std::string spanJson(std::uint64_t begin, std::uint64_t end, std::uint64_t begin16, std::uint64_t end16,
                     std::uint64_t beginCp, std::uint64_t endCp) {
    return "\"begin\":" + std::to_string(begin) + ",\"end\":" + std::to_string(end) + ",\"begin16\":" +
           std::to_string(begin16) + ",\"end16\":" + std::to_string(end16) + ",\"beginCp\":" +
           std::to_string(beginCp) + ",\"endCp\":" + std::to_string(endCp);
}

std::string cornerJson(const CellCorner& corner) {
    return "{\"column\":" + std::to_string(corner.s32Column) + ",\"row\":" + std::to_string(corner.s32Row) +
           ",\"columnAbsolute\":" + (corner.bColumnAbsolute ? "true" : "false") +
           ",\"rowAbsolute\":" + (corner.bRowAbsolute ? "true" : "false") + "," +
           spanJson(corner.u64Begin, corner.u64End, corner.u64BeginUtf16, corner.u64EndUtf16,
                    corner.u64BeginCodePoint, corner.u64EndCodePoint) +
           "}";
}

std::string tokenJson(const std::string& formula, const FormulaToken& token) {
    return "{\"kind\":\"" + ExpressionParser::FormulaTokens::oGetKindName(token.oKind) +
           "\",\"detail\":\"" + ExpressionParser::FormulaTokens::oGetDetailName(token.oDetail) +
           "\",\"text\":" + jsonString(std::string(token.oText(formula))) + "," +
           spanJson(token.u64Begin, token.u64End, token.u64BeginUtf16, token.u64EndUtf16,
                    token.u64BeginCodePoint, token.u64EndCodePoint) +
           "}";
}

std::string tokenText(const std::string& formula, const FormulaToken& token) {
    return offsets(token.u64Begin, token.u64End) + ' ' + ExpressionParser::FormulaTokens::oGetKindName(token.oKind) +
           ' ' + escapeField(std::string(token.oText(formula)));
}

// Plain: one line per input, one tab-separated field per token or reference.
void printTokens(const std::string& formula, bool json, std::ostream& out) {
    const char* separator = "";
    if (json) out << '[';
    for (const FormulaToken& token : ExpressionParser::FormulaTokens::oGetTokens(formula)) {
        out << separator << (json ? tokenJson(formula, token) : tokenText(formula, token));
        separator = json ? "," : "\t";
    }
    out << (json ? "]\n" : "\n");
}

void printReferences(const std::string& formula, bool json, std::ostream& out) {
    const char* separator = "";
    if (json) out << '[';
    for (const CellReference& reference : ExpressionParser::CellReferences::oGetReferences(formula)) {
        const std::string text(reference.oText(formula));
        if (json) {
            out << separator << "{\"text\":" << jsonString(text) << ','
                << spanJson(reference.u64Begin, reference.u64End, reference.u64BeginUtf16, reference.u64EndUtf16,
                            reference.u64BeginCodePoint, reference.u64EndCodePoint);
            if (reference.bIsRange) {
                out << ",\"from\":" << cornerJson(reference.oFrom) << ",\"to\":" << cornerJson(reference.oTo) << '}';
            } else {
                out << ",\"cell\":" << cornerJson(reference.oFrom) << '}';
            }
            separator = ",";
        } else {
            out << separator << offsets(reference.u64Begin, reference.u64End) << ' ' << escapeField(text) << ' '
                << cornerText(reference.oFrom);
            if (reference.bIsRange) out << ' ' << cornerText(reference.oTo);
            separator = "\t";
        }
    }
    out << (json ? "]\n" : "\n");
}

// Plain: the token or "-", the function and argument or "- -", then the
// completions separated by blanks, the four fields separated by tabs.
void printCursorHelp(const std::string& formula, std::uint64_t offset, bool json, std::ostream& out) {
    const ExpressionParser::CursorHelp help = ExpressionParser::FormulaCursor::oGetHelp(formula, offset);
    const bool inCall = help.poFunction != nullptr;
    const std::string argument = inCall ? std::to_string(help.s32Argument) : json ? "null" : "-";
    std::string completions;
    for (const std::string& name : help.oCompletions) {
        completions += (completions.empty() ? "" : json ? "," : " ") + (json ? jsonString(name) : name);
    }
    if (json) {
        out << "{\"token\":" << (help.bHasToken ? tokenJson(formula, help.oToken) : "null")
            << ",\"function\":" << (inCall ? jsonString(help.poFunction->oName) : "null")
            << ",\"argument\":" << argument << ",\"inText\":" << (help.bInText ? "true" : "false")
            << ",\"completions\":[" << completions << "]}\n";
    } else {
        out << (help.bHasToken ? tokenText(formula, help.oToken) : "-") << '\t'
            << (inCall ? help.poFunction->oName : "-") << ' ' << argument << '\t' << completions << '\n';
    }
}

// Reads "[--json] [--] [FORMULA...]" and prints each input with `print`.
int runEditorCommand(const std::string& name, const std::vector<std::string>& args, Streams io,
                     const std::function<void(const std::string&, bool, std::ostream&)>& print) {
    bool json = false;
    std::vector<std::string> formulas;
    bool optionsEnded = false;
    for (const std::string& arg : args) {
        if (optionsEnded || arg.rfind("--", 0) != 0) {
            formulas.push_back(arg);
        } else if (arg == "--") {
            optionsEnded = true;
        } else if (arg == "--json") {
            json = true;
        } else {
            throw UsageError("unknown option " + arg + " for " + name);
        }
    }
    forEachInput(formulas, io.in, [&](const std::string& formula, const std::string&) {
        print(formula, json, io.out);
        io.out.flush();
    });
    return 0;
}

std::string positionJson(const ExpressionParser::SourcePosition& position) {
    return "{\"line\":" + std::to_string(position.s32Line) + ",\"column\":" + std::to_string(position.s32Column) +
           ",\"offset\":" + std::to_string(position.u64Offset) + ",\"offset16\":" +
           std::to_string(position.u64Utf16Offset) + ",\"offsetCp\":" + std::to_string(position.u64CodePointOffset) +
           "}";
}

}  // namespace

int runTokens(const std::vector<std::string>& args, Streams io) {
    return runEditorCommand("tokens", args, io, printTokens);
}

int runRefs(const std::vector<std::string>& args, Streams io) {
    return runEditorCommand("refs", args, io, printReferences);
}

int runCursor(const std::vector<std::string>& args, Streams io) {
    if (args.empty()) throw UsageError("cursor needs a byte OFFSET");
    const int offset = readIndexArgument(args[0], "OFFSET");
    const auto print = [offset](const std::string& formula, bool json, std::ostream& out) {
        printCursorHelp(formula, static_cast<std::uint64_t>(offset), json, out);
    };
    return runEditorCommand("cursor", {args.begin() + 1, args.end()}, io, print);
}

std::string syntaxErrorJson(const ExpressionParser::SyntaxError& error) {
    std::string json = "{\"begin\":" + positionJson(error.oBegin) + ",\"end\":" + positionJson(error.oEnd);
    const std::string advice = std::string(",\"incomplete\":") + (error.bIncomplete ? "true" : "false") +
                               ",\"hint\":" + jsonString(error.oHint) + "}";
    if (!error.oInvalidCellName.empty()) {
        return json + ",\"invalidCellName\":" + jsonString(error.oInvalidCellName) + advice;
    }
    json += ",\"unexpected\":" + jsonString(error.oUnexpected) + ",\"expected\":[";
    for (std::size_t i = 0; i < error.oExpected.size(); ++i) json += (i == 0 ? "" : ",") + jsonString(error.oExpected[i]);
    return json + "]" + advice;
}

}  // namespace cellformula::cli
