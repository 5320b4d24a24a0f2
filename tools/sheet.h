#ifndef CELLFORMULA_TOOLS_SHEET_H
#define CELLFORMULA_TOOLS_SHEET_H

#include <istream>
#include <map>
#include <string>
#include <vector>

#include <cellformula/calculationcollection.h>

#include "cli.h"

namespace cellformula::cli {

// The program's variable source: the cells given on the command line or in a
// sheet. Records point into std::map nodes, which never move, so trees stay
// valid while cells are added or changed.
class CellTable : public CalculationCollectionBase {
public:
    VariableRecord oGetVariable(const std::string& name) override;
    CalculationCollectionBase* poClone() override;

    // Applies --cell and --sheet inputs in order; `in` serves "--sheet -".
    void load(const std::vector<TableInput>& inputs, std::istream& in);

private:
    enum class Kind { Empty, Number, Text };

    // A number cell keeps its formatted text too, so that it reads sensibly
    // where a text is wanted (concatenation, LEFT, RIGHT).
    struct Cell {
        Kind kind = Kind::Empty;
        double number = 0.0;
        std::string text;
    };

    void assign(const std::string& assignment);
    void loadSheet(const std::string& content, const std::string& sourceName);
    void setCell(const std::string& name, Cell cell);

    std::map<std::string, Cell> cells_;
};

}  // namespace cellformula::cli

#endif
