#ifndef CELLFORMULA_TOOLS_REWRITECOMMAND_H
#define CELLFORMULA_TOOLS_REWRITECOMMAND_H

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace cellformula::cli {

// "rewrite OPERATION ARGS... [FORMULA...]": prints each formula with its cell
// references moved. `args` starts after the word "rewrite". Returns 0; raises
// UsageError for an unknown operation or a bad number.
int runRewrite(const std::vector<std::string>& args, std::istream& in, std::ostream& out);

}  // namespace cellformula::cli

#endif
