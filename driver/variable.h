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
    std::uint32_t exprType() override;
    std::uint32_t errType() override;
    std::string stringEvaluate() const override;
    cellformula::Operation operation() const override;

    VariableRecord oRecord;
};

#endif
