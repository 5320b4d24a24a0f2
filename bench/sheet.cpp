#include "sheet.h"

namespace {

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Column and row indices of a name such as "B7", "$b$7"; false for any other name.
bool readCell(const std::string& name, int& column, int& row) {
    std::size_t at = 0;
    if (at < name.size() && name[at] == '$') ++at;
    long letters = 0;
    const std::size_t lettersStart = at;
    for (; at < name.size() && isLetter(name[at]) && at - lettersStart < 4; ++at) {
        letters = letters * 26 + ((name[at] | 0x20) - 'a' + 1);
    }
    if (at == lettersStart) return false;
    if (at < name.size() && name[at] == '$') ++at;
    long number = 0;
    const std::size_t digitsStart = at;
    for (; at < name.size() && isDigit(name[at]) && at - digitsStart < 8; ++at) number = number * 10 + (name[at] - '0');
    if (at == digitsStart || at != name.size() || number == 0) return false;
    column = static_cast<int>(letters - 1);
    row = static_cast<int>(number - 1);
    return true;
}

}  // namespace

BenchSheet::BenchSheet(int columns, int rows, int textColumns)
    : columns_(columns),
      rows_(rows),
      textColumns_(textColumns),
      numbers_(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)),
      texts_(numbers_.size()) {
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            // Values between 1 and 11 keep every logarithm and square root in its domain.
            numbers_[index(column, row)] = 1.0 + static_cast<double>((column * 7 + row * 3) % 11) + 0.25;
            if (isText(column)) texts_[index(column, row)] = "item " + cellName(column, row);
        }
    }
}

VariableRecord BenchSheet::oGetVariable(const std::string& name) {
    int column = 0;
    int row = 0;
    if (!readCell(name, column, row) || column >= columns_ || row >= rows_) {
        return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
    }
    const std::size_t at = index(column, row);
    if (isText(column)) return VariableRecord{ExprString, nullptr, &texts_[at], ErrNone};
    return VariableRecord{ExprNumber, &numbers_[at], nullptr, ErrNone};
}

std::string BenchSheet::cellName(int column, int row) {
    return SpreadSheetHelper::oGetLetterByIdx(column) + std::to_string(row + 1);
}

BenchSheet& formulaSheet() {
    static BenchSheet sheet(26, 100, 1);
    return sheet;
}

BenchSheet& rangeSheet() {
    static BenchSheet sheet(100, 1000, 0);
    return sheet;
}
