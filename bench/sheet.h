#ifndef CELLFORMULA_BENCH_SHEET_H
#define CELLFORMULA_BENCH_SHEET_H

#include <cstddef>
#include <string>
#include <vector>

#include "cellformula.h"

// A host whose cells live in flat arrays: the lookup costs a few character
// comparisons, so the figures measure the library rather than the host.
class BenchSheet : public CalculationCollectionBase {
public:
    // Every cell holds a positive number, except the last `textColumns`
    // columns, which hold texts.
    BenchSheet(int columns, int rows, int textColumns);

    VariableRecord oGetVariable(const std::string& name) override;
    // The benchmarks never copy a driver, so nothing asks for a clone.
    CalculationCollectionBase* poClone() override { return nullptr; }

    int columns() const { return columns_; }
    int rows() const { return rows_; }
    bool isText(int column) const { return column >= columns_ - textColumns_; }
    double* number(int column, int row) { return &numbers_[index(column, row)]; }
    static std::string cellName(int column, int row);

private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column);
    }

    int columns_;
    int rows_;
    int textColumns_;
    std::vector<double> numbers_;
    std::vector<std::string> texts_;
};

// The sheet of the formula benchmarks: A1..Z100, texts in column Z.
BenchSheet& formulaSheet();
// The sheet of the range benchmarks: A1..CV1000, numbers only.
BenchSheet& rangeSheet();

#endif
