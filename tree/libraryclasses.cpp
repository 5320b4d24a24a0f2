#include <typeinfo>

#include "arithmetic.h"
#include "comparison.h"
#include "logic.h"
#include "mathfunctions.h"
#include "radix.h"
#include "textfunctions.h"

namespace cellformula {

namespace {

// The library's own subclasses of the two operand bases, those that use the
// bases' rules most often first.
// Each has its key function in this library, so its type_info is one object.
const std::type_info* const kLibraryClasses[] = {
    &typeid(CNMultiply), &typeid(CNSubtract), &typeid(CNDivide),  &typeid(CNNegate),     &typeid(CNPower),
    &typeid(CNGreater),  &typeid(CNLess),     &typeid(CNEqual),   &typeid(CNGreatEqual), &typeid(CNLessEqual),
    &typeid(CNMin),      &typeid(CNMax),      &typeid(CNAnd),     &typeid(CNOr),         &typeid(CNNot),
    &typeid(CNSqrt),     &typeid(CNSin),      &typeid(CNCos),     &typeid(CNTan),        &typeid(CNAsin),
    &typeid(CNAcos),     &typeid(CNAtan),     &typeid(CNAtan2),   &typeid(CNLn),         &typeid(CNLog),
    &typeid(CNModulo),   &typeid(CNIsError),  &typeid(CNBin2Dec), &typeid(CNHex2Dec),    &typeid(CNAdd),
    &typeid(CNText),     &typeid(CNLeft),     &typeid(CNRight),   &typeid(CNDec2Bin),    &typeid(CNDec2Hex),
    &typeid(CNBin2Hex),  &typeid(CNHex2Bin),
};

}  // namespace

bool isLibraryNode(const ASTNode& node) {
    const std::type_info* type = &typeid(node);
    for (const std::type_info* library : kLibraryClasses) {
        if (library == type) return true;
    }
    return false;
}

}  // namespace cellformula
