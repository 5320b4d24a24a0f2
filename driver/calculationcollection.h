#ifndef CELLFORMULA_CALCULATIONCOLLECTION_H
#define CELLFORMULA_CALCULATIONCOLLECTION_H

#include <cstdint>
#include <string>

// What the host answers for one name: pointers into the host's own storage,
// read at every evaluation, plus a kind and an error fixed at parse time.
struct VariableRecord {
    std::uint32_t u32Type;
    double* pf64Value;
    std::string* poText;
    std::uint32_t u32Error;
};

// The host's variable source. The library uses the first two virtual slots
// only, in this order, and never deletes a source.
class CalculationCollectionBase {
public:
    virtual VariableRecord oGetVariable(const std::string& name) = 0;
    virtual CalculationCollectionBase* poClone() = 0;
    virtual ~CalculationCollectionBase() = default;
};

#endif
