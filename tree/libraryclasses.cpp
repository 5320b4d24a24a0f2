#include <typeinfo>

#include "radix.h"
#include "textfunctions.h"
#include "operands.h"

namespace cellformula {

namespace {

// The library's own subclasses of the two operand bases that have no rules
// for a compiled stack (the text-valued ones); the others name themselves
// through those rules.
const std::type_info* const kTextClasses[] = {
    &typeid(CNText),     &typeid(CNLeft),    &typeid(CNRight),    &typeid(CNDec2Bin), &typeid(CNBin2Dec),
    &typeid(CNDec2Hex),  &typeid(CNHex2Dec), &typeid(CNBin2Hex),  &typeid(CNHex2Bin),
};

}  // namespace

bool isLibraryNode(const ASTNode& node) {
    const std::type_info* type = &typeid(node);
    if (const StackRules* rules = node.stackRules()) return rules->owner == type;
    for (const std::type_info* library : kTextClasses) {
        if (library == type) return true;
    }
    return false;
}

}  // namespace cellformula
