#ifndef CELLFORMULA_BENCH_FORMULAS_H
#define CELLFORMULA_BENCH_FORMULAS_H

#include <cstddef>
#include <string>
#include <vector>

// One formula as this library writes it and as muparser writes it
// ("," separators, lower-case names, "?:" for IF), on the same cells.
struct PeerFormula {
    const char* ours;
    const char* muparser;
};

// Arithmetic and math formulas that both libraries understand.
const std::vector<PeerFormula>& comparableFormulas();

// Everything a sheet holds: the comparable formulas plus texts, ranges,
// logic and radix conversions that only this library offers.
const std::vector<std::string>& sheetFormulas();

// "=1+2+3+..." of at least `bytes` characters; `withEquals` false gives muparser's form.
std::string longSum(std::size_t bytes, bool withEquals = true);

// "=((...(1)...))" with `depth` pairs of parentheses.
std::string nestedParentheses(int depth, bool withEquals = true);

// "=SUM(A1:CVn)", a rectangle 100 columns wide of `cells` cells.
std::string rangeSum(int cells);

// A formula shape that grows one level or one term at a time:
// "=" head, `open` n times, innermost, `close` n times, tail.
struct GrowingShape {
    const char* name;
    const char* head;
    const char* open;
    const char* innermost;
    const char* close;
    const char* tail;
    int largest;        // the most levels its scaling series reaches
    bool nodePerLevel;  // false where the parser keeps one node whatever the depth
};

// Every deep shape a host may paste, nested or chained as the parser builds
// it, plus error-free forms of the shapes whose test form meets an error at
// its innermost levels, so every level runs its complete check too.
const std::vector<GrowingShape>& growingShapes();

// The shape with `levels` levels or terms.
std::string grownFormula(const GrowingShape& shape, int levels);

// The sheet formulas joined by "+" into one formula of at least `bytes` characters.
std::string longMixedFormula(std::size_t bytes);
// A formula of at least `bytes` characters that is nothing but references.
std::string longReferenceList(std::size_t bytes);

#endif
