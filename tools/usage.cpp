#include "usage.h"

namespace cellformula::cli {

void printUsage(std::ostream& out) {
    out << R"(Usage:
  cellformula [OPTIONS] [FORMULA...]
  cellformula rewrite offset ROWS COLS [FORMULA...]
  cellformula rewrite insert-row N [FORMULA...]
  cellformula rewrite delete-row N [FORMULA...]
  cellformula rewrite insert-column COL [FORMULA...]
  cellformula rewrite delete-column COL [FORMULA...]
  cellformula cell NAME
  cellformula cell COL ROW

Parses and evaluates each FORMULA ("=..." or a bare number); without FORMULA
arguments, formulas are read one per line from standard input (empty lines
are skipped). For each formula one line is printed:
  VALUE <tab> TYPE <tab> CODE NAME
TYPE is number, text or none; CODE NAME is the error, e.g. "0 ErrNone",
"5 ErrDomain" ("Err<code>" for codes the library does not name). In VALUE a
backslash, tab, newline and carriage return are written as \\ \t \n \r.

Options:
  --cell NAME=VALUE  give a cell a value: "..." (in double quotes) is a text,
                     otherwise a decimal number; an empty VALUE leaves the cell
                     without value. Cell names are read like the formula does
                     ($ markers dropped, letters in any case); other names, such
                     as those of INPUT("..."), are taken verbatim.
  --sheet FILE       load cells from a CSV file: the first line is row 1, the
                     first field column A; numeric fields are numbers, other
                     fields texts, empty fields leave the cell without value.
                     --cell and --sheet apply in the order given.
  --tree             print the tree outline before each result
  --trace            trace the scanner and parser on standard error
  -h, --help         show this help
  --                 end of options

A number cell also reads as its formatted text where a text is wanted; a name
that was never given a value has no value (error 3 ErrNoValue).

rewrite prints each formula with its cell references moved: by ROWS rows and
COLS columns (offset), or after inserting or deleting row N (counted from 1)
or column COL (letters such as C, or an index counted from 0).

cell NAME prints the column index, row index (both from 0) and column letters
of a cell name; cell COL ROW prints the name of the cell at those indices.

Exit status: 0 on success; 1 if a formula did not parse, was not a formula or
could not be evaluated (after all formulas are processed), or if NAME is not a
cell name; 2 for invalid arguments or an unreadable sheet.
)";
}

}  // namespace cellformula::cli
