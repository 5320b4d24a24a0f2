#ifndef CELLFORMULA_TOOLS_FORMULAINPUT_H
#define CELLFORMULA_TOOLS_FORMULAINPUT_H

#include <functional>
#include <istream>
#include <string>
#include <vector>

namespace cellformula::cli {

// Hands each formula to `handle`: the given ones, or, when there are none,
// the lines of `in` as they arrive (a trailing CR removed, empty lines skipped).
void forEachFormula(const std::vector<std::string>& formulas, std::istream& in,
                    const std::function<void(const std::string&)>& handle);

}  // namespace cellformula::cli

#endif
