#ifndef CELLFORMULA_REFERENCEREADER_H
#define CELLFORMULA_REFERENCEREADER_H

// Reads the references of many formulas one after the other on one scanner,
// for a caller that reads a whole sheet. Internal to the library; not installed.
#include <string>
#include <vector>

#include "cellreferences.h"
#include "tokenreader.h"

namespace ExpressionParser {

class ReferenceReader {
public:
    ReferenceReader() : reader_(empty_) {}

    // The same as CellReferences::vGetReferences.
    void read(const std::string& formula, std::vector<CellReference>& references);

private:
    const std::string empty_;
    TokenReader reader_;
};

}  // namespace ExpressionParser

#endif
