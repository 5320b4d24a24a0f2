#ifndef CELLFORMULA_TOOLS_OPTIONS_H
#define CELLFORMULA_TOOLS_OPTIONS_H

#include <string>
#include <vector>

namespace cellformula::cli {

// One source of cell values, applied in command-line order so that a later
// --cell overrides a cell of an earlier --sheet.
struct TableInput {
    enum class Kind { CellAssignment, SheetFile };

    Kind kind;
    std::string text;  // "NAME=VALUE" or the file path
};

// The evaluation mode's command line.
struct EvaluateOptions {
    bool showHelp = false;
    bool showTree = false;
    bool trace = false;
    std::vector<TableInput> tableInputs;
    std::vector<std::string> formulas;  // empty: read standard input
};

// Raises UsageError for an unknown option or a missing option argument.
// Arguments beginning with a single "-" are formulas, as "-7" is a number.
EvaluateOptions parseEvaluateOptions(const std::vector<std::string>& args);

}  // namespace cellformula::cli

#endif
