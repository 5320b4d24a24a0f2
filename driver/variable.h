#ifndef CELLFORMULA_VARIABLE_H
#define CELLFORMULA_VARIABLE_H

#include "astnode.h"
#include "calculationcollection.h"

// A cell or named value: keeps the host's record and reads the host's current
// value through it at every evaluation.
class CNVariable : public ASTNode {
public:
    explicit CNVariable(const VariableRecord& record);
    double f64Evaluate() const override;
    void vPrintNode(std::stringstream& stream, unsigned int depth) const override;
    double numberWithin(cellformula::Evaluation& evaluation) const override;
    void appendTextWithin(cellformula::Evaluation& evaluation, std::string& text) const override;
    std::uint32_t typeWithin(cellformula::Evaluation& evaluation) const override;
    std::uint32_t errorWithin(cellformula::Evaluation& evaluation) const override;
    const cellformula::StackRules* stackRules() const override;
    cellformula::WalkedAnswer walkWithin(cellformula::Evaluation& evaluation) const override;
    bool writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                          bool entry) const override;

    VariableRecord oRecord;
};

#endif
