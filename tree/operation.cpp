#include <typeinfo>

#include "arithmetic.h"
#include "comparison.h"
#include "logic.h"
#include "mathfunctions.h"
#include "radix.h"
#include "rules.h"
#include "textfunctions.h"
#include "variable.h"

namespace cellformula {

#define CELLFORMULA_DECLARE_RULES(name, type) extern const Rules k##name##Rules;
CELLFORMULA_OPERATIONS(CELLFORMULA_DECLARE_RULES)
#undef CELLFORMULA_DECLARE_RULES

#define CELLFORMULA_RULES_ENTRY(name, type) &k##name##Rules,
extern const Rules* const kRulesOfOperations[] = {CELLFORMULA_OPERATIONS(CELLFORMULA_RULES_ENTRY)};
#undef CELLFORMULA_RULES_ENTRY

namespace {

#define CELLFORMULA_CLASS_ENTRY(name, type) &typeid(type),
const std::type_info* const kClasses[] = {CELLFORMULA_OPERATIONS(CELLFORMULA_CLASS_ENTRY)};
#undef CELLFORMULA_CLASS_ENTRY

}  // namespace

const std::type_info* classOf(Operation operation) {
    return kClasses[static_cast<std::size_t>(operation)];
}

}  // namespace cellformula
