#ifndef CELLFORMULA_TOOLS_SHEET_H
#define CELLFORMULA_TOOLS_SHEET_H

#include <istream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <cellformula/calculationcollection.h>

#include "cli.h"

namespace cellformula::cli {

// A sheet field read as a number the way --sheet reads one: a plain decimal
// with blanks around it allowed, no hexadecimal, "inf" or "nan".
std::optional<double> readSheetNumber(const std::string& field);
// The records of a CSV sheet file ("-" for `in`), a byte-order mark skipped;
// a malformed file is an InputError naming the line.
std::vector<std::vector<std::string>> readCsvRecords(const std::string& path, std::istream& in);
// A field as CSV writes it: in double quotes when it holds a comma, a quote or a line end.
std::string csvField(const std::string& text);

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
