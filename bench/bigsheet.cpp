#include "bigsheet.h"

#include <random>

namespace {

class FormulaMaker {
public:
    std::string cell() { return column() + std::to_string(row()); }
    std::string column() { return std::string(1, static_cast<char>('A' + pick(26))); }
    int row() { return 1 + static_cast<int>(pick(1000)); }
    std::string number() { return std::to_string(1 + pick(9)); }
    std::size_t pick(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }

    std::string arithmetic() {
        switch (pick(4)) {
            case 0: return "=" + cell() + "*" + number() + "+" + cell();
            case 1: return "=(" + cell() + "-" + cell() + ")/" + number();
            case 2: return "=" + cell() + "*" + cell() + "+" + cell() + "*" + cell();
            default: return "=" + cell() + "+" + cell() + "-" + cell();
        }
    }
    std::string rangeSum() {
        const std::string letter = column();
        const int first = 1 + static_cast<int>(pick(990));
        const int last = first + 1 + static_cast<int>(pick(7));
        const std::string range = letter + std::to_string(first) + ":" + letter + std::to_string(last);
        return pick(2) == 0 ? "=SUM(" + range + ")*" + number() : "=SUM(" + range + ")+" + cell();
    }
    std::string extreme() {
        const std::string function = pick(2) == 0 ? "MIN" : "MAX";
        return "=" + function + "(" + cell() + ";" + cell() + ";" + cell() + ")";
    }
    std::string condition() {
        const std::string a = cell();
        const std::string b = cell();
        return "=IF(" + a + ">" + b + ";" + a + "-" + b + ";" + b + "*" + number() + ")";
    }

private:
    std::mt19937 random_{20261124};
};

}  // namespace

std::vector<std::string> bigSheetFormulas(std::size_t count) {
    FormulaMaker maker;
    std::vector<std::string> formulas;
    formulas.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t kind = i % 10;
        if (kind < 4) {
            formulas.push_back(maker.arithmetic());
        } else if (kind < 6) {
            formulas.push_back(maker.rangeSum());
        } else if (kind < 8) {
            formulas.push_back(maker.extreme());
        } else {
            formulas.push_back(maker.condition());
        }
    }
    return formulas;
}
