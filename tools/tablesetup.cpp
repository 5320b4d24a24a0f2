#include "tablesetup.h"

#include <fstream>
#include <optional>
#include <string>

#include "csvreader.h"
#include "errors.h"
#include "spreadsheethelper.h"

namespace cellformula::cli {

namespace {

void applyAssignment(const std::string& assignment, CellTable& table) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw UsageError("--cell expects NAME=VALUE, got \"" + assignment + "\"");
    }
    const std::optional<CellValue> value = readAssignedValue(assignment.substr(equals + 1));
    if (!value) {
        throw UsageError("--cell " + assignment +
                         ": the value must be a number, a text in double quotes, or empty");
    }
    table.setCell(assignment.substr(0, equals), *value);
}

void applySheet(const std::string& path, CellTable& table) {
    // Binary mode keeps CR characters, so CRLF lines read alike everywhere.
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError("cannot read sheet " + path);
    CsvReader reader(file, path);
    std::vector<std::string> fields;
    for (long row = 1; reader.nextRecord(fields); ++row) {
        for (std::size_t column = 0; column < fields.size(); ++column) {
            const std::string name = SpreadSheetHelper::oGetLetterByIdx(static_cast<int>(column)) +
                                     std::to_string(row);
            table.setCell(name, readSheetField(fields[column]));
        }
    }
    if (file.bad()) throw InputError("error while reading sheet " + path);
}

}  // namespace

void applyTableInputs(const std::vector<TableInput>& inputs, CellTable& table) {
    for (const TableInput& input : inputs) {
        if (input.kind == TableInput::Kind::CellAssignment) {
            applyAssignment(input.text, table);
        } else {
            applySheet(input.text, table);
        }
    }
}

}  // namespace cellformula::cli
