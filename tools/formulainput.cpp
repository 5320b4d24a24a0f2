#include "formulainput.h"

namespace cellformula::cli {

void forEachFormula(const std::vector<std::string>& formulas, std::istream& in,
                    const std::function<void(const std::string&)>& handle) {
    if (!formulas.empty()) {
        for (const std::string& formula : formulas) handle(formula);
        return;
    }
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) handle(line);
    }
}

}  // namespace cellformula::cli
