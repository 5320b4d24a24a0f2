#include "formulaevaluator.h"

#include <memory>
#include <stdexcept>

#include "output.h"

namespace cellformula::cli {

FormulaEvaluator::FormulaEvaluator(CalculationCollectionBase& cells, bool showTree, bool trace,
                                   std::ostream& out, std::ostream& err)
    : showTree_(showTree), out_(out), err_(err) {
    driver_.vSetCalcCollection(&cells);
    driver_.vSetTrace(trace);
}

void FormulaEvaluator::evaluate(const std::string& text) {
    const std::unique_ptr<ASTNode> root(driver_.poParseExpression(text));
    if (!root) {
        // A syntax error was already reported by the driver on standard error;
        // only a text that was not taken for a formula at all needs a word.
        if (driver_.oGetErrorMsg().empty()) err_ << "not a formula: " << text << '\n';
        anyFailed_ = true;
        return;
    }
    if (showTree_) out_ << treeOutline(*root);
    printResult(text, *root);
    // Results appear as they are computed when formulas arrive on a pipe.
    out_.flush();
}

void FormulaEvaluator::printResult(const std::string& text, ASTNode& root) {
    try {
        out_ << resultLine(root) << '\n';
        return;
    } catch (const std::invalid_argument& error) {
        err_ << "cannot evaluate " << text << ": invalid argument (" << error.what() << ")\n";
    } catch (const std::out_of_range& error) {
        err_ << "cannot evaluate " << text << ": argument out of range (" << error.what() << ")\n";
    }
    anyFailed_ = true;
}

}  // namespace cellformula::cli
