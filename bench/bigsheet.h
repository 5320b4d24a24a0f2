#ifndef CELLFORMULA_BENCH_BIGSHEET_H
#define CELLFORMULA_BENCH_BIGSHEET_H

#include <cstddef>
#include <string>
#include <vector>

// The formulas of a realistic sheet over a grid of 1000 rows x 26 columns of
// numbers: 40% arithmetic, 20% SUM of a 2-8 cell range with one operation,
// 20% MIN or MAX, 20% IF with a comparison. The same texts on every call.
std::vector<std::string> bigSheetFormulas(std::size_t count = 100000);

#endif
