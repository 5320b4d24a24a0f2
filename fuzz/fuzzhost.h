#ifndef CELLFORMULA_FUZZ_FUZZHOST_H
#define CELLFORMULA_FUZZ_FUZZHOST_H

#include <map>
#include <string>
#include <vector>

#include "cellformula.h"

// What the host throws for D1, so that the parser's clean-up on a host
// exception runs too (the leak checker watches it).
struct HostRefusal {};

// Cells A1..C3 hold every kind of record a host can hand out, D1 throws; any
// other name is a cell without a value.
class FuzzHost : public CalculationCollectionBase {
public:
    FuzzHost() {
        numbers_ = {3.0, -2.5, 0.0, 1e300, 1.0};
        texts_ = {"10", "abc", "", "101", "-1"};
        add("A1", ExprNumber, &numbers_[0], nullptr, ErrNone);
        add("A2", ExprNumber, &numbers_[1], &texts_[0], ErrNone);
        add("A3", ExprNumber, &numbers_[2], nullptr, ErrNone);
        add("B1", ExprString, nullptr, &texts_[1], ErrNone);
        add("B2", ExprString, &numbers_[4], &texts_[2], ErrNone);
        add("B3", ExprString, nullptr, &texts_[3], ErrNone);
        add("C1", ExprNumber, nullptr, nullptr, ErrNone);
        add("C2", ExprNumber, &numbers_[3], &texts_[4], ErrUnmaskable);
        add("C3", ExprNoType, nullptr, &texts_[1], 42);
    }

    VariableRecord oGetVariable(const std::string& name) override {
        std::string key;
        for (const char c : name) {
            if (c != '$') key += static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
        }
        if (key == "D1") throw HostRefusal{};
        const auto found = cells_.find(key);
        if (found != cells_.end()) return found->second;
        return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
    }
    CalculationCollectionBase* poClone() override { return this; }

private:
    void add(const char* name, std::uint32_t type, double* number, std::string* text, std::uint32_t error) {
        cells_[name] = VariableRecord{type, number, text, error};
    }

    std::vector<double> numbers_;
    std::vector<std::string> texts_;
    std::map<std::string, VariableRecord> cells_;
};

#endif
