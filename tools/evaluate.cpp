// Evaluation mode: one result per input, as a tab line or a JSON object.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include <cellformula/cellformula.h>

#include "cli.h"
#include "roundtripnumber.h"
#include "sheet.h"

namespace cellformula::cli {

namespace {

// What one input came to: a value with its type and error code, or a failure
// with its message (no parse, no formula, or an exception while evaluating).
struct Result {
    bool failed = false;
    std::string value;
    double number = 0;  // the value in full when the type is a number
    std::uint32_t type = ExprNoType;
    std::uint32_t error = ErrNone;
    std::string errorText;
    std::string tree;  // the outline, when asked for
    std::optional<ExpressionParser::SyntaxError> syntaxError;
};

std::string outline(const ASTNode& root) {
    std::stringstream stream;
    root.vPrintNode(stream, 0);
    std::string text = stream.str();
    if (text.empty() || text.back() != '\n') text += '\n';
    return text;
}

// The one place where a formula text becomes a result.
Result evaluateFormula(ExpressionParser::ParserDriver& driver, const std::string& text, bool withTree) {
    Result result;
    const std::unique_ptr<ASTNode> root(driver.poParseExpression(text));
    if (!root) {
        result.failed = true;
        result.errorText = driver.oGetErrorMsg().empty() ? "not a formula" : driver.oGetErrorMsg();
        if (const ExpressionParser::SyntaxError* error = driver.poGetSyntaxError()) result.syntaxError = *error;
        return result;
    }
    if (withTree) result.tree = outline(*root);
    try {
        // The compiled program walks no recursion, whatever the formula's depth.
        const cellformula::FormulaResult all = cellformula::CompiledFormula(*root).oEvaluateAll();
        result.type = all.u32Type;
        result.error = all.u32Error;
        result.value = result.type == ExprNumber ? QuandelUtils::sstringify(all.f64Value) : all.oText;
        result.number = all.f64Value;
    } catch (const std::invalid_argument&) {
        result = Result{true, "", 0, ExprNoType, ErrNone, "cannot evaluate: invalid argument", result.tree, std::nullopt};
    } catch (const std::out_of_range&) {
        result = Result{true, "", 0, ExprNoType, ErrNone, "cannot evaluate: argument out of range", result.tree,
                        std::nullopt};
    }
    return result;
}

std::string typeName(const Result& result) {
    if (result.failed) return "error";
    switch (result.type) {
        case ExprNumber: return "number";
        case ExprString: return "text";
        case ExprNoType: return "none";
        default: return "type" + std::to_string(result.type);
    }
}

}  // namespace

std::string errorName(std::uint32_t error) {
    switch (error) {
        case ErrNone: return "ErrNone";
        case ErrInvalidArg: return "ErrInvalidArg";
        case ErrNoValue: return "ErrNoValue";
        case ErrInfinite: return "ErrInfinite";
        case ErrDomain: return "ErrDomain";
        case ErrWrongType: return "ErrWrongType";
        case ErrUnmaskable: return "ErrUnmaskable";
        default: return "Err" + std::to_string(error);
    }
}

namespace {

// Length of the well-formed UTF-8 sequence at `pos`, or 0 when the byte there
// does not start one (overlong forms, surrogates and code points above
// U+10FFFF are not well formed).
std::size_t utf8SequenceLength(const std::string& text, std::size_t pos) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(pos);
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) length = 2;
    else if (lead >= 0xE0 && lead <= 0xEF) length = 3, low = lead == 0xE0 ? 0xA0 : 0x80, high = lead == 0xED ? 0x9F : 0xBF;
    else if (lead >= 0xF0 && lead <= 0xF4) length = 4, low = lead == 0xF0 ? 0x90 : 0x80, high = lead == 0xF4 ? 0x8F : 0xBF;
    if (length == 0 || pos + length > text.size()) return 0;
    if (byte(pos + 1) < low || byte(pos + 1) > high) return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(pos + i) < 0x80 || byte(pos + i) > 0xBF) return 0;
    }
    return length;
}

// A number as JSON: the shortest text that reads back to it, or null where
// JSON has none (infinities, NaN) and for anything that is no number.
std::string numberJson(const Result& result) {
    if (result.failed || result.type != ExprNumber || !std::isfinite(result.number)) return "null";
    return roundTripNumberText(result.number);
}

void printText(const Result& result, const EvaluateOptions& options, std::ostream& out) {
    if (options.showTree) out << result.tree;
    if (result.failed) {
        out << "\terror\t" << escapeField(result.errorText) << '\n';
    } else {
        const bool full = options.digits && result.type == ExprNumber;
        out << escapeField(full ? roundTripNumberText(result.number) : result.value) << '\t' << typeName(result) << '\t' << result.error << ' '
            << errorName(result.error) << '\n';
    }
}

void printJson(const std::string& formula, const Result& result, bool withTree, std::ostream& out) {
    out << "{\"formula\":" << jsonString(formula);
    if (result.failed) {
        out << ",\"value\":null,\"number\":null,\"type\":\"error\",\"error\":null,\"errorName\":null";
    } else {
        out << ",\"value\":" << jsonString(result.value) << ",\"number\":" << numberJson(result)
            << ",\"type\":\"" << typeName(result)
            << "\",\"error\":" << result.error << ",\"errorName\":\"" << errorName(result.error) << '"';
    }
    out << ",\"errorText\":" << jsonString(result.errorText);
    if (result.syntaxError) out << ",\"syntaxError\":" << syntaxErrorJson(*result.syntaxError);
    if (withTree) out << ",\"tree\":" << (result.tree.empty() ? "null" : jsonString(result.tree));
    out << "}\n";
}

}  // namespace

// Keeps a field on one line: backslash, tab, LF and CR become \\ \t \n \r.
std::string escapeField(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '\\': escaped += "\\\\"; break;
            case '\t': escaped += "\\t"; break;
            case '\n': escaped += "\\n"; break;
            case '\r': escaped += "\\r"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

// A JSON string for any bytes: control characters escaped, every byte that is
// not part of well-formed UTF-8 replaced by U+FFFD.
std::string jsonString(const std::string& text) {
    static const char kHex[] = "0123456789abcdef";
    std::string json = "\"";
    for (std::size_t pos = 0; pos < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[pos]);
        if (c >= 0x80) {
            const std::size_t length = utf8SequenceLength(text, pos);
            json += length == 0 ? std::string("\xEF\xBF\xBD") : text.substr(pos, length);
            pos += length == 0 ? 1 : length;
            continue;
        }
        if (c == '"' || c == '\\') {
            json += '\\';
            json += static_cast<char>(c);
        } else if (c == '\n') {
            json += "\\n";
        } else if (c == '\t') {
            json += "\\t";
        } else if (c == '\r') {
            json += "\\r";
        } else if (c < 0x20 || c == 0x7F) {
            json += "\\u00";
            json += kHex[c >> 4];
            json += kHex[c & 0xF];
        } else {
            json += static_cast<char>(c);
        }
        ++pos;
    }
    return json + '"';
}

int runEvaluate(const EvaluateOptions& options, Streams io) {
    const bool sheetFromInput = std::any_of(options.tableInputs.begin(), options.tableInputs.end(),
                                            [](const TableInput& input) {
                                                return input.kind == TableInput::Kind::SheetFile && input.text == "-";
                                            });
    if (sheetFromInput && options.formulas.empty()) {
        throw UsageError("--sheet - reads standard input, so the formulas must be arguments");
    }
    CellTable cells;
    cells.load(options.tableInputs, io.in);
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&cells);
    driver.vSetTrace(options.trace);
    // Messages go out with the input's origin below, not bare from the driver.
    driver.vSetErrorStream(nullptr);
    bool anyFailed = false;
    forEachInput(options.formulas, io.in, [&](const std::string& text, const std::string& origin) {
        const Result result = evaluateFormula(driver, text, options.showTree);
        if (options.json) {
            printJson(text, result, options.showTree, io.out);
        } else {
            printText(result, options, io.out);
        }
        // Results appear as they are computed when formulas arrive on a pipe.
        io.out.flush();
        if (result.failed) {
            io.err << origin << ": " << escapeField(result.errorText) << '\n';
            if (result.syntaxError && !result.syntaxError->oHint.empty()) {
                io.err << origin << ": hint: " << escapeField(result.syntaxError->oHint) << '\n';
            }
            anyFailed = true;
        }
    });
    return anyFailed ? 1 : 0;
}

}  // namespace cellformula::cli
