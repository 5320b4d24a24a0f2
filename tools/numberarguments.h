#ifndef CELLFORMULA_TOOLS_NUMBERARGUMENTS_H
#define CELLFORMULA_TOOLS_NUMBERARGUMENTS_H

#include <string>

namespace cellformula::cli {

// A whole decimal number that fits an int, such as "-3"; `what` names the
// argument in the UsageError raised for anything else.
int readIntArgument(const std::string& text, const std::string& what);

// Like readIntArgument, but also refuses negative numbers.
int readIndexArgument(const std::string& text, const std::string& what);

// A column given as letters ("C", "aa"; up to six) or as an index from 0
// ("2"); returns the index.
int readColumnArgument(const std::string& text);

}  // namespace cellformula::cli

#endif
