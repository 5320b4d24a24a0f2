#include "formulasheet.h"

#include <cstdint>

namespace formulasheet {
namespace {

// A fixed linear congruential sequence, so every run and the HyperFormula
// script see the same sheet.
class Sequence {
public:
    std::uint32_t next(std::uint32_t bound) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state_ >> 33) % bound;
    }

private:
    std::uint64_t state_ = 20261124;
};

std::string name(int column, int row) { return SpreadSheetHelper::oGetLetterByIdx(column) + std::to_string(row + 1); }

// An operand of the formula at (column, row): a formula of the column
// before, near the same row, or a value cell.
std::string operand(Sequence& random, int column, int row) {
    if (column > kValueColumns && random.next(5) == 0) {
        const int near = row + static_cast<int>(random.next(5)) - 2;
        return name(column - 1, near < 0 ? 0 : near >= kRows ? kRows - 1 : near);
    }
    return name(static_cast<int>(random.next(kValueColumns)), static_cast<int>(random.next(kRows)));
}

std::string formulaAt(Sequence& random, int column, int row, bool readsHotCell) {
    const std::string a = readsHotCell ? "$A$1" : operand(random, column, row);
    const std::string b = operand(random, column, row);
    const std::string c = operand(random, column, row);
    const std::uint32_t kind = random.next(10);
    if (kind < 4) return "=" + a + "*" + b + "+" + c + "/4";
    if (kind < 6) {
        const int rangeColumn = 1 + static_cast<int>(random.next(kValueColumns - 1));
        const int first = static_cast<int>(random.next(kRows - 8));
        const int last = first + 1 + static_cast<int>(random.next(7));
        return "=SUM(" + name(rangeColumn, first) + ":" + name(rangeColumn, last) + ")*2+" + a;
    }
    if (kind < 8) return std::string(kind == 6 ? "=MIN(" : "=MAX(") + a + ";" + b + ";" + c + ")";
    return "=IF(" + a + ">" + b + ";" + a + "-" + c + ";" + b + "+1)";
}

std::vector<Formula> build() {
    std::vector<Formula> sheet;
    sheet.reserve(std::size_t(kRows) * kFormulaColumns);
    Sequence random;
    for (int column = kValueColumns; column < kColumns; ++column) {
        for (int row = 0; row < kRows; ++row) {
            const bool hot = sheet.size() % 20 == 7;
            sheet.push_back(Formula{{column, row}, formulaAt(random, column, row, hot)});
        }
    }
    return sheet;
}

}  // namespace

const std::vector<Formula>& formulas() {
    static const std::vector<Formula> sheet = build();
    return sheet;
}

double value(int column, int row) { return 1.0 + static_cast<double>((column * 7 + row * 3) % 11) + 0.25; }

Host::Host() : numbers_(std::size_t(kRows) * kColumns, 0.0) {
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kValueColumns; ++column) numbers_[index(column, row)] = value(column, row);
    }
}

VariableRecord Host::oGetVariable(const std::string& name) {
    int column = 0;
    int row = 0;
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0 || column >= kColumns || row >= kRows) {
        return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
    }
    return VariableRecord{ExprNumber, &numbers_[index(column, row)], nullptr, ErrNone};
}

}  // namespace formulasheet
