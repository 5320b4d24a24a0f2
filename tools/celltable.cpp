#include "celltable.h"

#include "astnode.h"
#include "sstringify.h"
#include "spreadsheethelper.h"

namespace cellformula::cli {

VariableRecord CellTable::oGetVariable(const std::string& name) {
    const auto found = cells_.find(canonicalName(name));
    if (found == cells_.end() || found->second.value.kind == CellValue::Kind::Empty) {
        return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
    }
    StoredCell& cell = found->second;
    if (cell.value.kind == CellValue::Kind::Text) {
        return VariableRecord{ExprString, nullptr, &cell.value.text, ErrNone};
    }
    return VariableRecord{ExprNumber, &cell.value.number, &cell.numberText, ErrNone};
}

CalculationCollectionBase* CellTable::poClone() {
    return new CellTable(*this);
}

void CellTable::setCell(const std::string& name, const CellValue& value) {
    StoredCell& cell = cells_[canonicalName(name)];
    cell.value = value;
    cell.numberText = value.kind == CellValue::Kind::Number
                          ? QuandelUtils::sstringify(value.number)
                          : std::string();
}

std::string CellTable::canonicalName(const std::string& name) {
    int column = 0;
    int row = 0;
    if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0) return name;
    // Names with more letters or digits than coordinates can hold stay as written.
    if (column < 0 || row < 0) return name;
    return SpreadSheetHelper::oGetLetterByIdx(column) + std::to_string(row + 1LL);
}

}  // namespace cellformula::cli
