#ifndef CELLFORMULA_TREEWALKS_H
#define CELLFORMULA_TREEWALKS_H

// The two walks over a tree besides evaluation, both with a work list
// instead of recursion. Never installed.
#include <sstream>

#include "astnode.h"
#include "operation.h"

namespace cellformula {

// Writes the outline of the tree under `root`, whose own line is that of
// `operation` (the class whose vPrintNode was called).
void printOutline(const ASTNode& root, Operation operation, std::stringstream& stream, unsigned int depth);

// Deletes a subtree; a null root is nothing to delete.
void deleteTree(ASTNode* root);

}  // namespace cellformula

#endif
