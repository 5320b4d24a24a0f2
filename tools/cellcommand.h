#ifndef CELLFORMULA_TOOLS_CELLCOMMAND_H
#define CELLFORMULA_TOOLS_CELLCOMMAND_H

#include <ostream>
#include <string>
#include <vector>

namespace cellformula::cli {

// "cell NAME" prints "COLUMN<tab>ROW<tab>LETTERS" (indices from 0);
// "cell COLUMN ROW" prints the cell's name. `args` starts after the word
// "cell". Returns 0, or 1 for a text that is no cell name; raises UsageError
// for a wrong number of arguments or bad indices.
int runCell(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cellformula::cli

#endif
