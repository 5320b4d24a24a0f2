#ifndef CELLFORMULA_TOOLS_FORMULAEVALUATOR_H
#define CELLFORMULA_TOOLS_FORMULAEVALUATOR_H

#include <ostream>
#include <string>

#include "parserdriver.h"

namespace cellformula::cli {

// Parses one formula after another with one driver and prints each result.
// Remembers whether any formula failed, so the caller can set the status
// after all of them are done.
class FormulaEvaluator {
public:
    FormulaEvaluator(CalculationCollectionBase& cells, bool showTree, bool trace,
                     std::ostream& out, std::ostream& err);

    void evaluate(const std::string& text);
    bool anyFailed() const { return anyFailed_; }

private:
    void printResult(const std::string& text, ASTNode& root);

    ExpressionParser::ParserDriver driver_;
    bool showTree_;
    std::ostream& out_;
    std::ostream& err_;
    bool anyFailed_ = false;
};

}  // namespace cellformula::cli

#endif
