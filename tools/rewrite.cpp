// The rewrite subcommand: moves the cell references of formula texts.
#include <functional>
#include <ostream>

#include <cellformula/parserdriver.h>

#include "cli.h"

namespace cellformula::cli {

namespace {

using Driver = ExpressionParser::ParserDriver;
using Rewriter = std::function<std::string(const std::string&)>;

const std::string& argumentAt(const std::vector<std::string>& args, std::size_t index, const std::string& what) {
    if (index >= args.size()) throw UsageError("rewrite " + args[0] + " needs " + what);
    return args[index];
}

int readRowNumber(const std::vector<std::string>& args) {
    const int row = readIntArgument(argumentAt(args, 1, "a row number"), "row number");
    if (row < 1) throw UsageError("row numbers start at 1, got " + args[1]);
    return row;
}

int readColumn(const std::vector<std::string>& args) {
    return readColumnArgument(argumentAt(args, 1, "a column"));
}

// Picks the operation and reads its numbers; `consumed` tells how many
// arguments, the operation's name included, belong to it.
Rewriter chooseRewriter(const std::vector<std::string>& args, std::size_t& consumed) {
    const std::string& operation = args[0];
    consumed = 2;
    if (operation == "offset") {
        const int rows = readIntArgument(argumentAt(args, 1, "ROWS and COLS"), "ROWS");
        const int columns = readIntArgument(argumentAt(args, 2, "COLS"), "COLS");
        consumed = 3;
        return [rows, columns](const std::string& f) { return Driver::oOffsetCellsNames(f, rows, columns); };
    }
    if (operation == "insert-row") {
        const int row = readRowNumber(args);
        return [row](const std::string& f) { return Driver::oChangeCellNamesAfterRowInsertion(f, row); };
    }
    if (operation == "delete-row") {
        const int row = readRowNumber(args);
        return [row](const std::string& f) { return Driver::oChangeCellNamesAfterRowDeletion(f, row); };
    }
    if (operation == "insert-column") {
        const int column = readColumn(args);
        return [column](const std::string& f) { return Driver::oChangeCellNamesAfterColumnInsertion(f, column); };
    }
    if (operation == "delete-column") {
        const int column = readColumn(args);
        return [column](const std::string& f) { return Driver::oChangeCellNamesAfterColumnDeletion(f, column); };
    }
    throw UsageError("unknown rewrite operation \"" + operation + "\"");
}

}  // namespace

int runRewrite(const std::vector<std::string>& args, Streams io) {
    if (args.empty()) throw UsageError("rewrite needs an operation");
    std::size_t consumed = 0;
    const Rewriter rewrite = chooseRewriter(args, consumed);
    const std::vector<std::string> formulas(args.begin() + static_cast<std::ptrdiff_t>(consumed), args.end());
    forEachInput(formulas, io.in, [&](const std::string& formula, const std::string&) {
        io.out << rewrite(formula) << '\n';
        io.out.flush();
    });
    return 0;
}

}  // namespace cellformula::cli
