// A small budgeting sheet as a host of cellformula builds it: values and
// formulas in a grid, evaluated in the dependency graph's order, evaluated
// again after a change (only what depends on it), and rows inserted and
// deleted with every formula following its cells.
#include <cellformula/cellformula.h>

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using ExpressionParser::DependencyGraph;
using ExpressionParser::SheetCell;

namespace {

// What the host stores per cell. The parser asks for a cell's record while it
// parses, and a record fixes the cell's type and error, so a formula is parsed
// when it is evaluated: after the cells it reads.
struct Cell {
    std::string formula;  // empty for a value cell
    std::uint32_t type = ExprNumber;
    std::uint32_t error = ErrNone;
    bool hasValue = false;
    double number = 0.0;
    std::string text;
    std::string shown;  // what the grid prints
};

class Budget : public CalculationCollectionBase {
public:
    Budget() { driver_.vSetCalcCollection(this); driver_.vSetErrorStream(nullptr); }

    void setNumber(const std::string& name, double value) {
        Cell& cell = cells_[key(at(name))];
        cell = Cell{"", ExprNumber, ErrNone, true, value, QuandelUtils::sstringify(value), QuandelUtils::sstringify(value)};
        graph_.bRemoveFormula(at(name));  // a value replaces a formula
        recalculate({at(name)});
    }

    void setText(const std::string& name, const std::string& text) {
        cells_[key(at(name))] = Cell{"", ExprString, ErrNone, true, 0.0, text, text};
        graph_.bRemoveFormula(at(name));
        recalculate({at(name)});
    }

    void setFormula(const std::string& name, const std::string& formula) {
        cells_[key(at(name))].formula = formula;
        graph_.vSetFormula(at(name), formula);
        recalculate({at(name)});
    }

    // Inserts `count` rows before row number `row` (from 1): the graph rewrites
    // the formulas, the host moves its own cells.
    void insertRows(int row, int count) {
        std::map<std::pair<int, int>, Cell> moved;
        for (auto& [key, cell] : cells_) {
            const int newRow = key.first >= row - 1 ? key.first + count : key.first;
            moved[{newRow, key.second}] = std::move(cell);
        }
        cells_ = std::move(moved);
        keepTexts(graph_.oInsertRows(row - 1, count));
    }

    void deleteRows(int row, int count) {
        std::map<std::pair<int, int>, Cell> kept;
        for (auto& [key, cell] : cells_) {
            if (key.first >= row - 1 && key.first < row - 1 + count) continue;
            kept[{key.first >= row - 1 ? key.first - count : key.first, key.second}] = std::move(cell);
        }
        cells_ = std::move(kept);
        keepTexts(graph_.oDeleteRows(row - 1, count));
        recalculateAll();
    }

    void recalculateAll() {
        std::vector<SheetCell> all;
        for (const auto& [key, cell] : cells_) all.push_back(SheetCell{key.second, key.first});
        recalculate(all);
    }

    void print(std::ostream& out) const {
        int row = -1;
        for (const auto& [key, cell] : cells_) {
            if (key.first != row) out << (row < 0 ? "" : "\n") << "row " << key.first + 1 << ":";
            row = key.first;
            out << "  " << SpreadSheetHelper::oGetLetterByIdx(key.second) << ": " << cell.shown;
            if (!cell.formula.empty()) out << " [" << cell.formula << "]";
        }
        out << "\n";
    }

    VariableRecord oGetVariable(const std::string& name) override {
        int column = 0;
        int row = 0;
        if (SpreadSheetHelper::s8CreateColumnLine(name, column, row) != 0) return {ExprNumber, nullptr, nullptr, ErrNone};
        const auto found = cells_.find({row, column});
        if (found == cells_.end() || !found->second.hasValue) return {ExprNumber, nullptr, nullptr, ErrNone};
        Cell& cell = found->second;
        if (cell.type == ExprString) return {ExprString, nullptr, &cell.text, cell.error};
        return {cell.type, &cell.number, &cell.text, cell.error};
    }
    CalculationCollectionBase* poClone() override { return nullptr; }

private:
    static SheetCell at(const std::string& name) {
        int column = 0;
        int row = 0;
        SpreadSheetHelper::s8CreateColumnLine(name, column, row);
        return SheetCell{column, row};
    }

    static std::pair<int, int> key(SheetCell cell) { return {cell.s32Row, cell.s32Column}; }

    void keepTexts(const std::vector<ExpressionParser::FormulaChange>& changes) {
        for (const auto& change : changes) {
            if (!change.bRemoved) cells_[{change.oTo.s32Row, change.oTo.s32Column}].formula = change.oText;
        }
    }

    // Evaluates every formula depending on `changed`, each after what it reads.
    void recalculate(const std::vector<SheetCell>& changed) {
        const ExpressionParser::RecalculationOrder order = graph_.oGetRecalculationOrder(changed);
        for (const auto& cycle : order.oCycles) {
            for (const SheetCell& member : cycle) {
                Cell& cell = cells_[{member.s32Row, member.s32Column}];
                cell.hasValue = false;
                cell.shown = "#CYCLE";
            }
        }
        for (const SheetCell& member : order.oOrder) evaluate(cells_[{member.s32Row, member.s32Column}]);
        std::cout << "  evaluated " << order.oOrder.size() << " formula(s), " << order.oCycles.size() << " cycle(s)\n";
    }

    void evaluate(Cell& cell) {
        const std::unique_ptr<ASTNode> root(driver_.poParseExpression(cell.formula));
        cell.hasValue = root != nullptr;
        if (!root) {
            cell.shown = "#SYNTAX (" + driver_.oGetErrorMsg() + ")";
            return;
        }
        cell.type = root->exprType();
        cell.error = root->errType();
        if (cell.type == ExprNumber) cell.number = root->f64Evaluate();
        cell.text = cell.type == ExprNumber ? QuandelUtils::sstringify(cell.number)
                    : cell.type == ExprString && cell.error == ErrNone ? root->stringEvaluate()
                                                                       : "";
        cell.shown = cell.error == ErrNone ? cell.text : "#error " + std::to_string(cell.error);
    }

    std::map<std::pair<int, int>, Cell> cells_;  // by (row, column), so the grid prints in order
    DependencyGraph graph_;
    ExpressionParser::ParserDriver driver_;
};

}  // namespace

int main() {
    Budget budget;
    std::cout << "The sheet:\n";
    budget.setText("A1", "rent");
    budget.setNumber("B1", 900);
    budget.setText("A2", "food");
    budget.setNumber("B2", 350);
    budget.setText("A3", "total");
    budget.setFormula("B3", "=SUM(B1:B2)");
    budget.setFormula("C1", "=B1/$B$3");
    budget.setFormula("C2", "=B2/$B$3");
    budget.print(std::cout);

    std::cout << "\nFood costs 450 now; only its dependents are evaluated:\n";
    budget.setNumber("B2", 450);
    budget.print(std::cout);

    std::cout << "\nA row for travel before row 2; formulas follow their cells:\n";
    budget.insertRows(2, 1);
    budget.setText("A2", "travel");
    budget.setNumber("B2", 250);
    budget.setFormula("C2", "=B2/$B$4");
    budget.print(std::cout);

    std::cout << "\nThe rent row deleted:\n";
    budget.deleteRows(1, 1);
    budget.print(std::cout);

    std::cout << "\nA syntax error, an error code and a cycle:\n";
    budget.setFormula("D1", "=B1*");
    budget.setFormula("D2", "=SQRT(-B2)");
    budget.setFormula("E1", "=E2+1");
    budget.setFormula("E2", "=E1*2");
    budget.print(std::cout);
    return 0;
}
