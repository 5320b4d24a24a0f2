#ifndef CELLFORMULA_TESTS_TESTHOST_H
#define CELLFORMULA_TESTS_TESTHOST_H

// A variable source for tests: cells hold a number, a text, both or nothing,
// and every lookup is logged in order.
#include <deque>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cellformula.h"

class TestHost : public CalculationCollectionBase {
public:
    void setNumber(const std::string& name, double value) { cell(name) = Cell{ExprNumber, value, "", true, false}; }
    void setText(const std::string& name, const std::string& text) { cell(name) = Cell{ExprString, 0.0, text, false, true}; }
    void setEmpty(const std::string& name, std::uint32_t type = ExprNumber) { cell(name) = Cell{type, 0.0, "", false, false}; }
    void setError(const std::string& name, std::uint32_t error) { cell(name).error = error; }
    void throwOn(const std::string& name) { throwingName_ = name; }
    double& number(const std::string& name) { return cell(name).number; }

    VariableRecord oGetVariable(const std::string& name) override {
        lookups.push_back(name);
        if (name == throwingName_) throw std::runtime_error("host refused " + name);
        Cell& found = cell(name);
        return VariableRecord{found.type, found.hasNumber ? &found.number : nullptr,
                              found.hasText ? &found.text : nullptr, found.error};
    }
    // The library never deletes a clone, so the original keeps it alive.
    CalculationCollectionBase* poClone() override {
        clones_.push_back(std::make_shared<TestHost>(*this));
        return clones_.back().get();
    }

    std::vector<std::string> lookups;

private:
    struct Cell {
        std::uint32_t type = ExprNumber;
        double number = 0.0;
        std::string text;
        bool hasNumber = false;
        bool hasText = false;
        std::uint32_t error = ErrNone;
    };
    // A map keeps every cell at one address for as long as the host lives.
    Cell& cell(const std::string& name) { return cells_[name]; }

    std::map<std::string, Cell> cells_;
    std::string throwingName_;
    std::vector<std::shared_ptr<TestHost>> clones_;
};

// What a host sees of one formula: parsed or not, and the four answers.
struct Evaluation {
    bool parsed = false;
    double value = 0.0;
    std::string text;
    std::uint32_t type = ExprNoType;
    std::uint32_t error = ErrNone;
    std::string outline;
};

inline Evaluation evaluateFormula(const std::string& formula, TestHost* host = nullptr) {
    ExpressionParser::ParserDriver driver;
    driver.vSetCalcCollection(host);
    std::unique_ptr<ASTNode> root(driver.poParseExpression(formula));
    Evaluation result;
    if (!root) return result;
    result.parsed = true;
    result.type = root->exprType();
    result.error = root->errType();
    result.value = root->f64Evaluate();
    result.text = root->stringEvaluate();
    std::stringstream outline;
    root->vPrintNode(outline, 0);
    result.outline = outline.str();
    return result;
}

#endif
