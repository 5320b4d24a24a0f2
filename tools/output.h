#ifndef CELLFORMULA_TOOLS_OUTPUT_H
#define CELLFORMULA_TOOLS_OUTPUT_H

#include <cstdint>
#include <string>

class ASTNode;

namespace cellformula::cli {

// "number", "text", "none", or "type<code>" for a code the library does not use.
std::string typeName(std::uint32_t exprType);

// "ErrNone" ... "ErrUnmaskable", or "Err<code>" for a host's own code.
std::string errorName(std::uint32_t errType);

// Keeps a value on one line: backslash, tab, LF and CR become \\ \t \n \r.
std::string escapeValue(const std::string& value);

// The result line of a tree without the line end: value, type name, and error
// code with its name, separated by tabs, e.g. "1.5\tnumber\t0 ErrNone". May
// throw what the tree's text evaluation throws.
std::string resultLine(ASTNode& root);

// The indented outline of the tree, ending in a line end.
std::string treeOutline(const ASTNode& root);

}  // namespace cellformula::cli

#endif
