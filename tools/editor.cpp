// The editor subcommands: the tokens of each formula and its cell references,
// plain or as JSON, and the syntax error object of the evaluating JSON output.
#include <ostream>
#include <string>

#include <cellformula/cellreferences.h>
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

std::string cornerJson(const CellCorner& corner) {
    return "{\"column\":" + std::to_string(corner.s32Column) + ",\"row\":" + std::to_string(corner.s32Row) +
           ",\"columnAbsolute\":" + (corner.bColumnAbsolute ? "true" : "false") +
           ",\"rowAbsolute\":" + (corner.bRowAbsolute ? "true" : "false") + ",\"begin\":" +
           std::to_string(corner.u64Begin) + ",\"end\":" + std::to_string(corner.u64End) + "}";
}

// Plain: one line per input, one tab-separated field per token or reference.
void printTokens(const std::string& formula, bool json, std::ostream& out) {
    const char* separator = "";
    if (json) out << '[';
    for (const FormulaToken& token : ExpressionParser::FormulaTokens::oGetTokens(formula)) {
        const std::string kind = ExpressionParser::FormulaTokens::oGetKindName(token.oKind);
        const std::string text(token.oText(formula));
        if (json) {
            out << separator << "{\"kind\":\"" << kind << "\",\"text\":" << jsonString(text)
                << ",\"begin\":" << token.u64Begin << ",\"end\":" << token.u64End << '}';
            separator = ",";
        } else {
            out << separator << offsets(token.u64Begin, token.u64End) << ' ' << kind << ' ' << escapeField(text);
            separator = "\t";
        }
    }
    out << (json ? "]\n" : "\n");
}

void printReferences(const std::string& formula, bool json, std::ostream& out) {
    const char* separator = "";
    if (json) out << '[';
    for (const CellReference& reference : ExpressionParser::CellReferences::oGetReferences(formula)) {
        const std::string text(reference.oText(formula));
        if (json) {
            out << separator << "{\"text\":" << jsonString(text) << ",\"begin\":" << reference.u64Begin
                << ",\"end\":" << reference.u64End;
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

// Reads "[--json] [--] [FORMULA...]" and prints each input with `print`.
int runEditorCommand(const std::string& name, const std::vector<std::string>& args, Streams io,
                     void (*print)(const std::string&, bool, std::ostream&)) {
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
           ",\"offset\":" + std::to_string(position.u64Offset) + "}";
}

}  // namespace

int runTokens(const std::vector<std::string>& args, Streams io) {
    return runEditorCommand("tokens", args, io, printTokens);
}

int runRefs(const std::vector<std::string>& args, Streams io) {
    return runEditorCommand("refs", args, io, printReferences);
}

std::string syntaxErrorJson(const ExpressionParser::SyntaxError& error) {
    std::string json = "{\"begin\":" + positionJson(error.oBegin) + ",\"end\":" + positionJson(error.oEnd);
    if (!error.oInvalidCellName.empty()) return json + ",\"invalidCellName\":" + jsonString(error.oInvalidCellName) + "}";
    json += ",\"unexpected\":" + jsonString(error.oUnexpected) + ",\"expected\":[";
    for (std::size_t i = 0; i < error.oExpected.size(); ++i) json += (i == 0 ? "" : ",") + jsonString(error.oExpected[i]);
    return json + "]}";
}

}  // namespace cellformula::cli
