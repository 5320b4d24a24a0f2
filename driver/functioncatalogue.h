#ifndef CELLFORMULA_FUNCTIONCATALOGUE_H
#define CELLFORMULA_FUNCTIONCATALOGUE_H

#include <cstdint>
#include <string>
#include <vector>

namespace ExpressionParser {

// The kind of value a function yields.
enum class FunctionResult {
    Number,
    Text,
    FromArguments,  // SUM joins texts when an argument is one; IF yields its chosen branch
};

// One function of the formula language. Arguments are separated by ";"; the
// name is also accepted in small letters.
struct FunctionEntry {
    std::string oName;              // "SUM"
    std::string oSignature;         // "SUM(value; ...)"
    std::uint32_t u32MinArguments;
    std::uint32_t u32MaxArguments;  // FunctionCatalogue::kUnbounded for any number
    bool bAcceptsRanges;            // a range such as A1:B3 may stand as an argument
    FunctionResult oResult;
    std::string oDescription;
};

class FunctionCatalogue {
public:
    static constexpr std::uint32_t kUnbounded = UINT32_MAX;

    // Every function of the language, in the grammar's token order.
    static const std::vector<FunctionEntry>& oGetFunctions();

    // The entry of a function name in either accepted spelling ("SUM" or
    // "sum"), or null.
    static const FunctionEntry* poFind(const std::string& name);
};

}  // namespace ExpressionParser

#endif
