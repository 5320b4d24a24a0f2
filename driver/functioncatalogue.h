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

// What an argument takes.
enum class ArgumentKind {
    Number,
    Text,
    Range,  // a value, or a cell range such as A1:B3
    Any,    // a number or a text
};

// One argument of a function, for a tooltip that follows the cursor.
struct FunctionArgument {
    std::string oName;         // "base"
    ArgumentKind oKind;
    bool bOptional;            // may be left out (with its ";")
    bool bRepeats;             // may be given any number of times, separated by ";"
    std::string oDescription;  // one line
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
    std::vector<FunctionArgument> oArguments;  // in the order they are written
};

class FunctionCatalogue {
public:
    static constexpr std::uint32_t kUnbounded = UINT32_MAX;

    // Every function of the language, in the grammar's token order.
    static const std::vector<FunctionEntry>& oGetFunctions();

    // The entry of a function name in either accepted spelling ("SUM" or
    // "sum"), or null.
    static const FunctionEntry* poFind(const std::string& name);

    // "number", "text", "range" or "any".
    static std::string oGetArgumentKindName(ArgumentKind kind);
};

}  // namespace ExpressionParser

#endif
