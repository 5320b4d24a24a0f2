#ifndef CELLFORMULA_BENCH_FORMULASHEET_H
#define CELLFORMULA_BENCH_FORMULASHEET_H

#include <string>
#include <vector>

#include "cellformula.h"

// A realistic sheet: values in A1:Z1000 and 100,000 formulas in AA1:DV1000
// over them, 40% arithmetic, 20% SUM of a 2 to 8 cell range plus an
// operation, 20% MIN or MAX, 20% IF with a comparison. About one operand in
// five reads a formula of the column before, so dependencies run deep; every
// 20th formula reads $A$1, which about a tenth of the formulas then depend on.
namespace formulasheet {

constexpr int kRows = 1000;
constexpr int kValueColumns = 26;
constexpr int kFormulaColumns = 100;
constexpr int kColumns = kValueColumns + kFormulaColumns;

struct Formula {
    ExpressionParser::SheetCell cell;
    std::string text;
};

const std::vector<Formula>& formulas();
double value(int column, int row);  // of a value cell

// The host of the sheet: every cell's number in one array, so a record
// points into it and a formula's result is stored where its readers look.
class Host : public CalculationCollectionBase {
public:
    Host();
    VariableRecord oGetVariable(const std::string& name) override;
    CalculationCollectionBase* poClone() override { return nullptr; }
    double& at(ExpressionParser::SheetCell cell) { return numbers_[index(cell.s32Column, cell.s32Row)]; }

private:
    static std::size_t index(int column, int row) { return std::size_t(row) * kColumns + std::size_t(column); }
    std::vector<double> numbers_;
};

}  // namespace formulasheet

#endif
