#include "evaluatecommand.h"

#include "celltable.h"
#include "formulaevaluator.h"
#include "formulainput.h"
#include "options.h"
#include "tablesetup.h"
#include "usage.h"

namespace cellformula::cli {

int runEvaluate(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                std::ostream& err) {
    const EvaluateOptions options = parseEvaluateOptions(args);
    if (options.showHelp) {
        printUsage(out);
        return 0;
    }
    CellTable cells;
    applyTableInputs(options.tableInputs, cells);
    FormulaEvaluator evaluator(cells, options.showTree, options.trace, out, err);
    forEachFormula(options.formulas, in,
                   [&evaluator](const std::string& text) { evaluator.evaluate(text); });
    return evaluator.anyFailed() ? 1 : 0;
}

}  // namespace cellformula::cli
