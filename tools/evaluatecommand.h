#ifndef CELLFORMULA_TOOLS_EVALUATECOMMAND_H
#define CELLFORMULA_TOOLS_EVALUATECOMMAND_H

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace cellformula::cli {

// The default mode: parses and evaluates formulas over the given cells.
// Returns the exit status (0, or 1 when some formula failed); raises
// UsageError or InputError for bad arguments.
int runEvaluate(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                std::ostream& err);

}  // namespace cellformula::cli

#endif
