#ifndef CELLFORMULA_TOOLS_USAGE_H
#define CELLFORMULA_TOOLS_USAGE_H

#include <ostream>

namespace cellformula::cli {

void printUsage(std::ostream& out);

}  // namespace cellformula::cli

#endif
