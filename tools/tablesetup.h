#ifndef CELLFORMULA_TOOLS_TABLESETUP_H
#define CELLFORMULA_TOOLS_TABLESETUP_H

#include <vector>

#include "celltable.h"
#include "options.h"

namespace cellformula::cli {

// Fills the table from --cell assignments and --sheet files, in order.
// Raises UsageError for a malformed assignment and InputError for a sheet
// that cannot be read.
void applyTableInputs(const std::vector<TableInput>& inputs, CellTable& table);

}  // namespace cellformula::cli

#endif
