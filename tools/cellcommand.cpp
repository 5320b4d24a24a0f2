#include "cellcommand.h"

#include <climits>

#include "errors.h"
#include "numberarguments.h"
#include "spreadsheethelper.h"

namespace cellformula::cli {

namespace {

int describeName(const std::string& name, std::ostream& out, std::ostream& err) {
    int column = 0;
    int row = 0;
    // Column letters or row digits beyond what the indices hold do not name a cell either.
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0 || column < 0 || row < 0) {
        err << "not a cell name: " << name << '\n';
        return 1;
    }
    out << column << '\t' << row << '\t' << SpreadSheetHelper::oGetLetterByIdx(column) << '\n';
    return 0;
}

int nameCell(const std::string& columnText, const std::string& rowText, std::ostream& out) {
    const int column = readColumnArgument(columnText);
    const int row = readIndexArgument(rowText, "row index");
    if (row == INT_MAX) throw UsageError("row index is out of range: " + rowText);
    out << SpreadSheetHelper::oGetLetterByIdx(column) << row + 1 << '\n';
    return 0;
}

}  // namespace

int runCell(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() == 1) return describeName(args[0], out, err);
    if (args.size() == 2) return nameCell(args[0], args[1], out);
    throw UsageError("cell needs a cell NAME, or a column and a row index");
}

}  // namespace cellformula::cli
