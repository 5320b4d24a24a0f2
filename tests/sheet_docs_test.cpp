// The structural-edit examples of docs/sheet.md, run, so the page cannot drift.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "structuraledit.h"

namespace {

using ExpressionParser::StructuralEdit;

// One edit line: "insert-rows 3 1: =..." applied to `formula`.
std::string applyLine(const std::string& formula, const std::string& line) {
    std::istringstream words(line.substr(0, line.find(':')));
    std::string operation;
    words >> operation;
    std::vector<int> numbers;
    for (int number = 0; words >> number;) numbers.push_back(number);
    const auto need = [&](std::size_t count) {
        if (numbers.size() != count) throw std::runtime_error("wrong argument count in: " + line);
    };
    if (operation == "copy") {
        need(2);
        return StructuralEdit::oCopyFormula(formula, numbers[0], numbers[1]);
    }
    if (operation == "move") {
        need(6);
        return StructuralEdit::oMoveBlock(formula, SpreadSheetHelper::Selection(numbers[0], numbers[1], numbers[2], numbers[3]),
                                          numbers[4], numbers[5]);
    }
    need(2);
    if (operation == "insert-rows") return StructuralEdit::oInsertRows(formula, numbers[0], numbers[1]);
    if (operation == "delete-rows") return StructuralEdit::oDeleteRows(formula, numbers[0], numbers[1]);
    if (operation == "insert-columns") return StructuralEdit::oInsertColumns(formula, numbers[0], numbers[1]);
    if (operation == "delete-columns") return StructuralEdit::oDeleteColumns(formula, numbers[0], numbers[1]);
    throw std::runtime_error("unknown edit in: " + line);
}

TEST(SheetDocs, StructuralEditExamplesHold) {
    const std::string source = __FILE__;
    std::ifstream document(source.substr(0, source.rfind("/tests/")) + "/docs/sheet.md");
    ASSERT_TRUE(document) << "docs/sheet.md not found";
    int examples = 0;
    bool inBlock = false;
    std::string formula;
    for (std::string line; std::getline(document, line);) {
        if (!inBlock) {
            inBlock = line == "```structural-edit";
            formula.clear();
        } else if (line == "```") {
            inBlock = false;
        } else if (formula.empty()) {
            formula = line;
        } else {
            SCOPED_TRACE(formula + " / " + line);
            EXPECT_EQ(applyLine(formula, line), line.substr(line.find(": ") + 2));
            ++examples;
        }
    }
    EXPECT_GE(examples, 10);
}

}  // namespace
