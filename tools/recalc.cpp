// recalc: evaluates every formula of a CSV sheet in dependency order and
// writes the sheet's values.
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include <cellformula/cellformula.h>

#include "cli.h"
#include "sheet.h"

namespace cellformula::cli {

namespace {

using ExpressionParser::SheetCell;

// What a cell holds once known: a value cell from the start, a formula cell
// after its evaluation. Nodes of an unordered_map never move, so records may
// point into them.
struct Slot {
    enum class State { Value, Pending, Evaluated, Syntax, Cycle };
    State state = State::Value;
    std::uint32_t type = ExprNumber;
    std::uint32_t error = ErrNone;
    bool hasValue = false;
    double number = 0.0;
    std::string text;  // a text value, or a number's text for texts that read it
    std::string formula;
    std::string problem;  // the syntax error message
};

class SheetValues : public CalculationCollectionBase {
public:
    Slot& at(SheetCell cell) { return slots_[key(cell)]; }
    Slot* find(SheetCell cell) {
        const auto found = slots_.find(key(cell));
        return found == slots_.end() ? nullptr : &found->second;
    }

    // A cell's record as it stands when a formula reading it is parsed: a
    // formula cell is parsed only after every formula it reads was evaluated.
    VariableRecord oGetVariable(const std::string& name) override {
        int column = 0;
        int row = 0;
        Slot* slot = nullptr;
        if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) == 0) slot = find(SheetCell{column, row});
        if (slot == nullptr || !slot->hasValue) return VariableRecord{ExprNumber, nullptr, nullptr, ErrNone};
        if (slot->type == ExprNumber) return VariableRecord{ExprNumber, &slot->number, &slot->text, slot->error};
        if (slot->type == ExprString) return VariableRecord{ExprString, nullptr, &slot->text, slot->error};
        return VariableRecord{slot->type, nullptr, nullptr, slot->error};
    }
    CalculationCollectionBase* poClone() override { return new SheetValues(*this); }

private:
    static std::uint64_t key(SheetCell cell) {
        return (std::uint64_t(std::uint32_t(cell.s32Column)) << 32) | std::uint32_t(cell.s32Row);
    }
    std::unordered_map<std::uint64_t, Slot> slots_;
};

std::string cellName(SheetCell cell) {
    return SpreadSheetHelper::oGetLetterByIdx(cell.s32Column) + std::to_string(cell.s32Row + 1LL);
}

// Parses and evaluates one formula with the values its precedents have now;
// only the tree's public operations are used.
void evaluate(ExpressionParser::ParserDriver& driver, Slot& slot) {
    const std::unique_ptr<ASTNode> root(driver.poParseExpression(slot.formula));
    if (!root) {
        slot.state = Slot::State::Syntax;
        slot.problem = driver.oGetErrorMsg();
        return;
    }
    slot.state = Slot::State::Evaluated;
    slot.type = root->exprType();
    slot.error = root->errType();
    slot.hasValue = true;
    if (slot.type == ExprNumber) {
        slot.number = root->f64Evaluate();
        slot.text = QuandelUtils::sstringify(slot.number);
    } else if (slot.type == ExprString && slot.error == ErrNone) {
        // A text evaluation may throw only where the error code already objects.
        slot.text = root->stringEvaluate();
    }
}

// The field written for a formula cell.
std::string shown(const Slot& slot) {
    switch (slot.state) {
        case Slot::State::Syntax: return "#SYNTAX";
        case Slot::State::Cycle: return "#CYCLE";
        default: break;
    }
    if (slot.error != ErrNone) return "#" + errorName(slot.error);
    return slot.type == ExprNumber || slot.type == ExprString ? slot.text : "";
}

void writeJson(SheetCell cell, const Slot& slot, std::ostream& out) {
    out << "{\"cell\":\"" << cellName(cell) << "\",\"formula\":" << jsonString(slot.formula);
    if (slot.state == Slot::State::Evaluated) {
        const bool valued = slot.error == ErrNone && (slot.type == ExprNumber || slot.type == ExprString);
        out << ",\"value\":" << (valued ? jsonString(slot.text) : "null") << ",\"type\":\""
            << (slot.type == ExprNumber ? "number" : slot.type == ExprString ? "text" : "none")
            << "\",\"error\":" << slot.error << ",\"errorName\":\"" << errorName(slot.error) << '"';
    } else {
        out << ",\"value\":null,\"type\":\"" << (slot.state == Slot::State::Syntax ? "syntax" : "cycle")
            << "\",\"error\":null,\"errorName\":null";
    }
    out << ",\"cycle\":" << (slot.state == Slot::State::Cycle ? "true" : "false");
    if (slot.state == Slot::State::Syntax) out << ",\"errorText\":" << jsonString(slot.problem);
    out << "}\n";
}

}  // namespace

int runRecalc(const std::vector<std::string>& args, Streams io) {
    bool json = false;
    std::vector<std::string> files;
    for (const std::string& arg : args) {
        if (arg == "--json") {
            json = true;
        } else if (arg.size() > 1 && arg.rfind("-", 0) == 0) {
            throw UsageError("recalc: unknown option " + arg);
        } else {
            files.push_back(arg);
        }
    }
    if (files.size() != 1) throw UsageError("recalc expects one FILE.csv (- for standard input)");
    const std::vector<std::vector<std::string>> records = readCsvRecords(files[0], io.in);

    const ExpressionParser::SheetSize size{};
    if (records.size() > static_cast<std::size_t>(size.s32Rows)) {
        throw InputError("the sheet has more than " + std::to_string(size.s32Rows) + " rows");
    }
    for (const std::vector<std::string>& fields : records) {
        if (fields.size() > static_cast<std::size_t>(size.s32Columns)) {
            throw InputError("the sheet has more than " + std::to_string(size.s32Columns) + " columns");
        }
    }
    SheetValues values;
    ExpressionParser::DependencyGraph graph(size);
    std::vector<SheetCell> formulaCells;  // in grid order
    for (std::size_t row = 0; row < records.size(); ++row) {
        for (std::size_t column = 0; column < records[row].size(); ++column) {
            const std::string& field = records[row][column];
            if (field.empty()) continue;
            const SheetCell cell{static_cast<std::int32_t>(column), static_cast<std::int32_t>(row)};
            Slot& slot = values.at(cell);
            if (field[0] == '=') {
                slot.state = Slot::State::Pending;
                slot.formula = field;
                graph.vSetFormula(cell, field);
                formulaCells.push_back(cell);
            } else if (const std::optional<double> number = readSheetNumber(field)) {
                slot.hasValue = true;
                slot.number = *number;
                slot.text = QuandelUtils::sstringify(*number);
            } else {
                slot.hasValue = true;
                slot.type = ExprString;
                slot.text = field;
            }
        }
    }

    const ExpressionParser::RecalculationOrder order = graph.oGetCalculationOrder();
    for (const std::vector<SheetCell>& cycle : order.oCycles) {
        io.err << "cellformula: cycle:";
        for (const SheetCell& cell : cycle) {
            values.at(cell).state = Slot::State::Cycle;
            io.err << ' ' << cellName(cell);
        }
        io.err << '\n';
    }
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(&values);
    driver.vSetErrorStream(nullptr);  // messages are written below, with their cell
    bool failed = !order.oCycles.empty();
    for (const SheetCell& cell : order.oOrder) {
        Slot& slot = values.at(cell);
        evaluate(driver, slot);
        if (slot.state == Slot::State::Syntax) {
            io.err << "cellformula: " << cellName(cell) << ": " << slot.problem << '\n';
            failed = true;
        }
    }

    if (json) {
        for (const SheetCell& cell : formulaCells) writeJson(cell, values.at(cell), io.out);
        return failed ? 1 : 0;
    }
    for (std::size_t row = 0; row < records.size(); ++row) {
        for (std::size_t column = 0; column < records[row].size(); ++column) {
            const std::string& field = records[row][column];
            const bool formula = !field.empty() && field[0] == '=';
            const SheetCell cell{static_cast<std::int32_t>(column), static_cast<std::int32_t>(row)};
            io.out << (column == 0 ? "" : ",") << csvField(formula ? shown(values.at(cell)) : field);
        }
        io.out << '\n';
    }
    return failed ? 1 : 0;
}

}  // namespace cellformula::cli
