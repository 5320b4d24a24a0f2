#ifndef CELLFORMULA_TOOLS_CLI_H
#define CELLFORMULA_TOOLS_CLI_H

// What the parts of the cellformula program share: its two kinds of bad
// input, the way inputs arrive, and one entry per subcommand.
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include <cellformula/syntaxerror.h>

namespace cellformula::cli {

// The command line cannot be understood: one line with a hint to --help, status 2.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

// An argument is well-formed but what it names is unusable (an unreadable or
// broken sheet): the message alone, status 2.
class InputError : public std::runtime_error {
public:
    explicit InputError(const std::string& message) : std::runtime_error(message) {}
};

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

// One source of cell values, applied in command-line order so that a later
// --cell overrides a cell of an earlier --sheet.
struct TableInput {
    enum class Kind { CellAssignment, SheetFile };

    Kind kind;
    std::string text;  // "NAME=VALUE", or the file path ("-" is standard input)
};

struct EvaluateOptions {
    bool showTree = false;
    bool trace = false;
    bool json = false;
    bool digits = false;  // numbers in full in the plain output
    std::vector<TableInput> tableInputs;
    std::vector<std::string> formulas;  // empty: read standard input
};

// Hands each input to `handle` with the place it came from, for messages:
// "<argument>:2" for the second argument, "<stdin>:3" for the third line of
// standard input. Every line counts, empty ones included, so that outputs
// line up with inputs; a byte-order mark and a CR before the LF are dropped.
using InputHandler = std::function<void(const std::string& text, const std::string& origin)>;
void forEachInput(const std::vector<std::string>& arguments, std::istream& in, const InputHandler& handle);

// Editors on some systems put this before UTF-8 text; it is never content.
inline const std::string kByteOrderMark = "\xEF\xBB\xBF";
void dropByteOrderMark(std::string& text);

int runEvaluate(const EvaluateOptions& options, Streams io);
int runRewrite(const std::vector<std::string>& args, Streams io);
int runCell(const std::vector<std::string>& args, Streams io);
int runTokens(const std::vector<std::string>& args, Streams io);
int runRefs(const std::vector<std::string>& args, Streams io);
int runCursor(const std::vector<std::string>& args, Streams io);
int runRecalc(const std::vector<std::string>& args, Streams io);
int runEdit(const std::vector<std::string>& args, Streams io);

// An error code's name: "ErrDomain", or "Err<code>" for a host's own codes.
std::string errorName(std::uint32_t error);

// Output pieces shared by the subcommands: a field kept on one line (\\ \t
// \n \r escaped), a JSON string for any bytes, and a syntax error as JSON.
std::string escapeField(const std::string& text);
std::string jsonString(const std::string& text);
std::string syntaxErrorJson(const ExpressionParser::SyntaxError& error);

// Command-line numbers, shared by rewrite and cell; a bad one is a UsageError
// that names `what`.
int readIntArgument(const std::string& text, const std::string& what);
int readIndexArgument(const std::string& text, const std::string& what);
// Column letters (at most six, any case) or a column index counted from 0.
int readColumnArgument(const std::string& text);

}  // namespace cellformula::cli

#endif
