// edit: inserts or deletes rows or columns of a CSV sheet; cells move and
// every formula's references follow, as in a spreadsheet.
#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <cellformula/structuraledit.h>

#include "cli.h"
#include "sheet.h"

namespace cellformula::cli {

namespace {

using ExpressionParser::StructuralEdit;
using Records = std::vector<std::vector<std::string>>;
using FormulaEdit = std::string (*)(const std::string&, std::int32_t, std::int32_t, ExpressionParser::SheetSize);

struct EditKind {
    const char* name;
    bool rows;
    bool insert;
    FormulaEdit edit;
};

const EditKind kEdits[] = {
    {"insert-rows", true, true, StructuralEdit::oInsertRows},
    {"delete-rows", true, false, StructuralEdit::oDeleteRows},
    {"insert-columns", false, true, StructuralEdit::oInsertColumns},
    {"delete-columns", false, false, StructuralEdit::oDeleteColumns},
};

// Moves the cells of the grid; lines beyond its end hold nothing to move.
void moveCells(Records& records, const EditKind& kind, std::size_t at, std::size_t count) {
    if (kind.rows) {
        if (at > records.size()) return;
        if (kind.insert) {
            records.insert(records.begin() + static_cast<std::ptrdiff_t>(at), count, std::vector<std::string>{});
        } else {
            records.erase(records.begin() + static_cast<std::ptrdiff_t>(at),
                          records.begin() + static_cast<std::ptrdiff_t>(std::min(records.size(), at + count)));
        }
        return;
    }
    for (std::vector<std::string>& fields : records) {
        if (at >= fields.size()) continue;
        const auto first = fields.begin() + static_cast<std::ptrdiff_t>(at);
        if (kind.insert) {
            fields.insert(first, count, std::string());
        } else {
            fields.erase(first, fields.begin() + static_cast<std::ptrdiff_t>(std::min(fields.size(), at + count)));
        }
    }
}

}  // namespace

int runEdit(const std::vector<std::string>& args, Streams io) {
    if (args.size() != 4) throw UsageError("edit expects insert-rows|delete-rows ROW COUNT FILE.csv or "
                                           "insert-columns|delete-columns COLUMN COUNT FILE.csv");
    const auto kind = std::find_if(std::begin(kEdits), std::end(kEdits),
                                   [&](const EditKind& edit) { return args[0] == edit.name; });
    if (kind == std::end(kEdits)) throw UsageError("unknown edit " + args[0]);
    int at = 0;
    if (kind->rows) {
        at = readIntArgument(args[1], "row") - 1;
        if (at < 0) throw UsageError("row must be 1 or more, got " + args[1]);
    } else {
        if (args[1].find_first_of("0123456789") != std::string::npos) {
            throw UsageError("column must be letters, got \"" + args[1] + "\"");
        }
        at = readColumnArgument(args[1]);
    }
    const int count = readIntArgument(args[2], "count");
    try {
        kind->edit("=", at, count, ExpressionParser::SheetSize{});  // checks the edit before anything moves
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }

    Records records = readCsvRecords(args[3], io.in);
    moveCells(records, *kind, static_cast<std::size_t>(at), static_cast<std::size_t>(count));
    const ExpressionParser::SheetSize size{};
    const bool fits = records.size() <= static_cast<std::size_t>(size.s32Rows) &&
                      std::all_of(records.begin(), records.end(), [&](const std::vector<std::string>& fields) {
                          return fields.size() <= static_cast<std::size_t>(size.s32Columns);
                      });
    if (!fits) throw InputError("the edited sheet would not fit in " + std::to_string(size.s32Rows) + " rows and " +
                                std::to_string(size.s32Columns) + " columns");
    for (std::vector<std::string>& fields : records) {
        for (std::size_t column = 0; column < fields.size(); ++column) {
            std::string& field = fields[column];
            if (!field.empty() && field[0] == '=') field = kind->edit(field, at, count, size);
            io.out << (column == 0 ? "" : ",") << csvField(field);
        }
        io.out << '\n';
    }
    return 0;
}

}  // namespace cellformula::cli
