// The cellformula command-line program: evaluates formulas, rewrites their
// cell references and converts cell names, for trying the library by hand
// and for scripts.
#include <iostream>
#include <string>
#include <vector>

#include "cellcommand.h"
#include "errors.h"
#include "evaluatecommand.h"
#include "rewritecommand.h"
#include "usage.h"

namespace {

constexpr int kBadArguments = 2;

int dispatch(const std::vector<std::string>& args) {
    using namespace cellformula::cli;
    if (!args.empty() && args[0] == "rewrite") {
        return runRewrite({args.begin() + 1, args.end()}, std::cin, std::cout);
    }
    if (!args.empty() && args[0] == "cell") {
        return runCell({args.begin() + 1, args.end()}, std::cout, std::cerr);
    }
    return runEvaluate(args, std::cin, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    try {
        return dispatch(args);
    } catch (const cellformula::cli::UsageError& error) {
        std::cerr << "cellformula: " << error.what() << "\n\n";
        cellformula::cli::printUsage(std::cerr);
    } catch (const cellformula::cli::InputError& error) {
        std::cerr << "cellformula: " << error.what() << '\n';
    }
    return kBadArguments;
}
