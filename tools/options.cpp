#include "options.h"

#include "errors.h"

namespace cellformula::cli {

namespace {

bool isOption(const std::string& arg) {
    return arg == "-h" || arg.rfind("--", 0) == 0;
}

const std::string& optionArgument(const std::vector<std::string>& args, std::size_t& index) {
    if (index + 1 >= args.size()) throw UsageError(args[index] + " needs an argument");
    return args[++index];
}

}  // namespace

EvaluateOptions parseEvaluateOptions(const std::vector<std::string>& args) {
    EvaluateOptions options;
    bool optionsEnded = false;
    for (std::size_t index = 0; index < args.size(); ++index) {
        const std::string& arg = args[index];
        if (optionsEnded || !isOption(arg)) {
            options.formulas.push_back(arg);
        } else if (arg == "--") {
            optionsEnded = true;
        } else if (arg == "-h" || arg == "--help") {
            options.showHelp = true;
        } else if (arg == "--tree") {
            options.showTree = true;
        } else if (arg == "--trace") {
            options.trace = true;
        } else if (arg == "--cell") {
            options.tableInputs.push_back(
                {TableInput::Kind::CellAssignment, optionArgument(args, index)});
        } else if (arg == "--sheet") {
            options.tableInputs.push_back({TableInput::Kind::SheetFile, optionArgument(args, index)});
        } else {
            throw UsageError("unknown option " + arg);
        }
    }
    return options;
}

}  // namespace cellformula::cli
