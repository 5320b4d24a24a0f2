#ifndef CELLFORMULA_TOOLS_CELLTABLE_H
#define CELLFORMULA_TOOLS_CELLTABLE_H

#include <map>
#include <string>

#include "calculationcollection.h"
#include "cellvalue.h"

namespace cellformula::cli {

// The program's variable source: the cells given on the command line or in a
// sheet. Records point into std::map nodes, which never move, so trees stay
// valid while cells are added or changed.
class CellTable : public CalculationCollectionBase {
public:
    VariableRecord oGetVariable(const std::string& name) override;
    CalculationCollectionBase* poClone() override;

    // Replaces whatever the named cell held.
    void setCell(const std::string& name, const CellValue& value);

    // "$b$2" and "b2" both become "B2"; a name that is no cell name is kept as
    // written, since INPUT("...") names are free text.
    static std::string canonicalName(const std::string& name);

private:
    // A number cell keeps its formatted text too, so that it reads sensibly
    // where a text is wanted (concatenation, LEFT, RIGHT).
    struct StoredCell {
        CellValue value;
        std::string numberText;
    };

    std::map<std::string, StoredCell> cells_;
};

}  // namespace cellformula::cli

#endif
