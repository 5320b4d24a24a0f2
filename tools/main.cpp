// The cellformula command-line program: evaluates formulas, rewrites their
// cell references and converts cell names, for scripts and for trying the
// library by hand. This file is the entry: subcommands, options and usage.
#include <iostream>
#include <string>
#include <vector>

#include "cli.h"

namespace cellformula::cli {

namespace {

constexpr int kBadArguments = 2;

const char* const kUsage = R"(Usage:
  cellformula [OPTIONS] [FORMULA...]
  cellformula rewrite offset ROWS COLS [FORMULA...]
  cellformula rewrite insert-row N | delete-row N [FORMULA...]
  cellformula rewrite insert-column COL | delete-column COL [FORMULA...]
  cellformula cell NAME
  cellformula cell COL ROW
  cellformula tokens [--json] [FORMULA...]
  cellformula refs [--json] [FORMULA...]
  cellformula cursor OFFSET [--json] [FORMULA...]
  cellformula recalc [--json] FILE.csv|-
  cellformula edit insert-rows|delete-rows ROW COUNT FILE.csv|-
  cellformula edit insert-columns|delete-columns COLUMN COUNT FILE.csv|-

Parses and evaluates each FORMULA ("=..." or a bare number); without FORMULA
arguments, formulas are read one per line from standard input. Each input
gives exactly one line:
  VALUE <tab> TYPE <tab> CODE NAME      e.g. 16  number  0 ErrNone
  <tab> error <tab> MESSAGE             when the input did not parse, is no
                                        formula, or could not be evaluated
TYPE is number, text or none; CODE NAME is the error, e.g. "5 ErrDomain"
("Err<code>" for a host's own codes). In VALUE and MESSAGE a backslash, tab,
newline and carriage return are written as \\ \t \n \r. A failure is also
reported on standard error with its origin, e.g. "<stdin>:3: 1.4: syntax
error, unexpected end of file".

Options (also written --option=value):
  --cell NAME=VALUE  give a cell a value: "..." (in double quotes) is a text,
                     otherwise a decimal number; an empty VALUE leaves the cell
                     without value. Cell names are read like the formula does
                     ($ markers dropped, letters in any case); other names, such
                     as those of INPUT("..."), are taken verbatim.
  --sheet FILE       load cells from a CSV file (- for standard input): the
                     first line is row 1, the first field column A; numeric
                     fields are numbers, other fields texts, empty fields leave
                     the cell without value; a UTF-8 byte-order mark is skipped.
                     --cell and --sheet apply in the order given.
  --json             one JSON object per input instead of the tab line:
                     formula, value, type, error, errorName, errorText (and tree);
                     bytes that are not UTF-8 become U+FFFD; "number" holds
                     a number value in full (null otherwise)
  --digits           print number values in full (the shortest text that
                     reads back to the same double) instead of six digits
  --tree             print the tree outline before each result
  --trace            trace the scanner and parser on standard error
  --version          print the version
  -h, --help         show this help
  --                 end of options

rewrite prints each formula with its cell references moved: by ROWS rows and
COLS columns (offset), or after inserting or deleting row N (counted from 1)
or column COL (letters such as C, or an index counted from 0).

tokens prints the tokens of each input as the parser reads them, one line
per input with a tab between tokens, each as BEGIN END KIND TEXT (byte
offsets, end exclusive; KIND is number, text, name, function, input,
operator, separator, parenthesis, end or invalid). refs prints the cell
references of each input the same way, each as BEGIN END TEXT CELL [CELL],
a CELL being COLUMN,ROW indices from 0 with "$" before an absolute part.
With --json each input gives one line holding one JSON array.
With --json, an input that does not parse carries a "syntaxError" object:
begin and end (line, column, offset), "unexpected" and "expected" names, or
"invalidCellName" for a range corner that is no cell name, "incomplete"
(true when text appended could still make a formula) and "hint" (a plain
hint, also printed on a second line of standard error, or "").
JSON offsets come in bytes (begin, end, offset), UTF-16 units (begin16,
end16, offset16) and code points (beginCp, endCp, offsetCp).

cursor prints, for the byte OFFSET of each input, the token there (as
tokens prints it, or -), the function call around it and the argument index
(from 0, or - -) and the names that may be typed there, separated by tabs;
with --json one object per input: token, function, argument, inText and
completions.

cell NAME prints the column index, row index (both from 0) and column letters
of a cell name; cell COL ROW prints the name of the cell at those indices.

recalc reads a CSV sheet (the first field is A1) whose fields are values or
formulas ("=B2*C2"), evaluates every formula after the cells it reads and
writes the same grid with each formula replaced by its value; a formula
whose error code is not ErrNone gives "#" and the code's name (#ErrDomain),
one that does not parse #SYNTAX, a cell in a cycle #CYCLE. Each cycle's
cells and each syntax error are listed on standard error. With --json, one
object per formula cell: cell, formula, value, type (number, text, none,
syntax or cycle), error, errorName, cycle (and errorText for a syntax error).
A formula reading a cell in a cycle or a formula that did not parse finds no
value there. Status 1 when a formula did not parse or a cycle was found.

edit inserts COUNT rows before ROW (counted from 1) or COUNT columns before
COLUMN (letters), or deletes COUNT rows or columns from there, and writes the
edited sheet: cells move and every formula's references follow, "$" or not,
as in a spreadsheet; a reference whose cells are all deleted becomes #REF.

Exit status: 0 on success; 1 if any input failed (after all inputs are
processed) or NAME is not a cell name; 2 for invalid arguments or an
unreadable sheet.
)";

// Arguments beginning with a single "-" are formulas, as "-7" is a number.
bool isOption(const std::string& arg) {
    return arg == "-h" || arg.rfind("--", 0) == 0;
}

// Reads the value of an option that takes one, from "--name=value" or from
// the next argument.
std::string optionValue(const std::vector<std::string>& args, std::size_t& index,
                        const std::string& name, const std::string* inlineValue) {
    if (inlineValue != nullptr) return *inlineValue;
    if (index + 1 >= args.size()) throw UsageError(name + " needs an argument");
    return args[++index];
}

EvaluateOptions parseEvaluateOptions(const std::vector<std::string>& args, bool& done, Streams io) {
    EvaluateOptions options;
    bool optionsEnded = false;
    for (std::size_t index = 0; index < args.size(); ++index) {
        const std::string& arg = args[index];
        if (optionsEnded || !isOption(arg)) {
            options.formulas.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = arg.find('=');
        const std::string name = arg.substr(0, equals);
        const std::string inlineText = equals == std::string::npos ? "" : arg.substr(equals + 1);
        const std::string* inlineValue = equals == std::string::npos ? nullptr : &inlineText;
        if (name == "--cell" || name == "--sheet") {
            const TableInput::Kind kind =
                name == "--cell" ? TableInput::Kind::CellAssignment : TableInput::Kind::SheetFile;
            options.tableInputs.push_back({kind, optionValue(args, index, name, inlineValue)});
            continue;
        }
        bool* flag = name == "--tree"   ? &options.showTree
                     : name == "--trace" ? &options.trace
                     : name == "--json"  ? &options.json
                     : name == "--digits" ? &options.digits
                                         : nullptr;
        if (flag == nullptr && name != "-h" && name != "--help" && name != "--version") {
            throw UsageError("unknown option " + name);
        }
        if (inlineValue != nullptr) throw UsageError(name + " takes no value");
        if (flag != nullptr) {
            *flag = true;
        } else {
            io.out << (name == "--version" ? "cellformula " CELLFORMULA_CLI_VERSION "\n" : kUsage);
            done = true;
            return options;
        }
    }
    return options;
}

int evaluate(const std::vector<std::string>& args, Streams io) {
    bool done = false;
    const EvaluateOptions options = parseEvaluateOptions(args, done, io);
    return done ? 0 : runEvaluate(options, io);
}

struct Subcommand {
    const char* name;
    int (*run)(const std::vector<std::string>& args, Streams io);
};

// The first argument picks a subcommand; anything else is evaluated.
const Subcommand kSubcommands[] = {
    {"rewrite", runRewrite},
    {"cell", runCell},
    {"tokens", runTokens},
    {"refs", runRefs},
    {"cursor", runCursor},
    {"recalc", runRecalc},
    {"edit", runEdit},
};

int dispatch(const std::vector<std::string>& args, Streams io) {
    for (const Subcommand& subcommand : kSubcommands) {
        if (!args.empty() && args[0] == subcommand.name) {
            return subcommand.run({args.begin() + 1, args.end()}, io);
        }
    }
    return evaluate(args, io);
}

}  // namespace

void dropByteOrderMark(std::string& text) {
    if (text.rfind(kByteOrderMark, 0) == 0) text.erase(0, kByteOrderMark.size());
}

void forEachInput(const std::vector<std::string>& arguments, std::istream& in, const InputHandler& handle) {
    if (!arguments.empty()) {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            handle(arguments[i], "<argument>:" + std::to_string(i + 1));
        }
        return;
    }
    std::string line;
    for (long number = 1; std::getline(in, line); ++number) {
        if (number == 1) dropByteOrderMark(line);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        handle(line, "<stdin>:" + std::to_string(number));
    }
}

}  // namespace cellformula::cli

int main(int argc, char** argv) {
    using namespace cellformula::cli;
    const std::vector<std::string> args(argv + 1, argv + argc);
    const Streams io{std::cin, std::cout, std::cerr};
    try {
        return dispatch(args, io);
    } catch (const UsageError& error) {
        std::cerr << "cellformula: " << error.what() << " (see cellformula --help)\n";
    } catch (const InputError& error) {
        std::cerr << "cellformula: " << error.what() << '\n';
    }
    return kBadArguments;
}
