// Writes the 100,000-formula sheet of the graph benchmarks as CSV, for the
// HyperFormula script to load the very same cells.
#include <iostream>
#include <string>
#include <vector>

#include "formulasheet.h"

int main() {
    std::vector<std::string> grid(std::size_t(formulasheet::kRows) * formulasheet::kColumns);
    for (int row = 0; row < formulasheet::kRows; ++row) {
        for (int column = 0; column < formulasheet::kValueColumns; ++column) {
            grid[std::size_t(row) * formulasheet::kColumns + std::size_t(column)] =
                QuandelUtils::sstringify(formulasheet::value(column, row));
        }
    }
    for (const formulasheet::Formula& formula : formulasheet::formulas()) {
        grid[std::size_t(formula.cell.s32Row) * formulasheet::kColumns + std::size_t(formula.cell.s32Column)] =
            formula.text;
    }
    for (int row = 0; row < formulasheet::kRows; ++row) {
        for (int column = 0; column < formulasheet::kColumns; ++column) {
            std::cout << (column == 0 ? "" : ",") << grid[std::size_t(row) * formulasheet::kColumns + std::size_t(column)];
        }
        std::cout << '\n';
    }
    return 0;
}
