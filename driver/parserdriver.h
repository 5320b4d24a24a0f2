#ifndef CELLFORMULA_PARSERDRIVER_H
#define CELLFORMULA_PARSERDRIVER_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "astnode.h"
#include "calculationcollection.h"
#include "location.hh"
#include "spreadsheethelper.h"
#include "syntaxerror.h"

namespace ExpressionParser {

class Scanner;
struct ParsingContext;

// The library's entry: parses formula texts into expression trees. One driver
// serves one thread at a time; separate drivers share nothing.
class ParserDriver {
public:
    // Ranges of more cells than this in one formula, all counted together,
    // fail the parse unless the host raises the limit with vSetMaxRangeCells.
    static constexpr std::uint64_t kDefaultMaxRangeCells = 1000000;

    ParserDriver();
    ~ParserDriver();
    ParserDriver(const ParserDriver&) = delete;
    // Copies the error text and its data; takes a clone of the other driver's variable
    // source when this driver has none. The tree root is never copied.
    ParserDriver& operator=(const ParserDriver& other);

    // Parses one formula ("=..." or a bare number). Returns the tree, owned by
    // the caller, or null; after a failure oGetErrorMsg() says why (it stays
    // empty for a text that is neither a number nor begins with "="). Called
    // again from inside the variable source during a parse, it returns null
    // with an error text and leaves the parse under way undisturbed.
    ASTNode* poParseExpression(const std::string& text);

    void vSetASTNode(ASTNode* root);
    void vSetCalcCollection(CalculationCollectionBase* source);
    std::string& oGetErrorMsg();
    VariableRecord getVariableFrom(const std::string& name) const;

    // The failure of the last parse as data: null after a success, for a text
    // that is no formula, and for failures other than a syntax error or a
    // range corner that is no cell name. The error text is unaffected.
    const SyntaxError* poGetSyntaxError() const;

    // Records the message as the error text and writes it as one line to the
    // error stream.
    void error(const std::string& message);
    void error(const location& where, const std::string& message);

    // Where error() writes its lines: std::cerr by default, the host's own
    // stream, or nowhere when null. The error text is kept in every case.
    void vSetErrorStream(std::ostream* stream);

    // One variable node per cell of the rectangle between two corners, row by
    // row. An invalid corner, or a rectangle that takes the cells of the
    // formula being parsed past the limit (outside a parse: a rectangle of
    // more cells than the limit), records a message through error() and
    // yields an empty list without asking the source for any cell.
    std::vector<ASTNode*> oGetMultipleCellsVarList(const std::string& from, const std::string& to);

    void vSetMaxRangeCells(std::uint64_t cells);
    std::uint64_t u64GetMaxRangeCells() const;

    // Scanner and parser traces to standard error.
    void vSetTrace(bool enabled);

    // Reference rewriting for copied formulas and inserted or deleted rows and
    // columns; texts not beginning with "=" come back unchanged.
    //
    // Choices beyond the plain character scan:
    // - A name of letters and digits directly followed by "(" is a function
    //   call (ATAN2(, LOG10(), never a reference, and is copied unchanged.
    // - Both "input(" and "INPUT(" sections are copied unchanged, as the
    //   scanner accepts both forms.
    // - Positions are not limited to 16 bits: texts of any length are
    //   rewritten in one pass.
    static std::string oOffsetCellsNames(const std::string& formula, int rowOffset, int columnOffset);
    static std::string oChangeCellNames(const std::string& formula, int row, int column,
                                        int rowChange, int columnChange);
    static std::string oChangeCellNamesAfterRowInsertion(const std::string& formula, int row);
    static std::string oChangeCellNamesAfterColumnInsertion(const std::string& formula, int column);
    static std::string oChangeCellNamesAfterRowDeletion(const std::string& formula, int row);
    static std::string oChangeCellNamesAfterColumnDeletion(const std::string& formula, int column);

    // The scanner that the parser pulls its tokens from.
    Scanner& scanner();

private:
    // Cells of the ranges expanded so far in the formula being parsed; 0
    // outside a parse, where adding counts nothing.
    std::uint64_t formulaRangeCells() const;
    void addFormulaRangeCells(std::uint64_t cells);

    ASTNode* poRoot_;
    CalculationCollectionBase* poSource_;
    ParsingContext* poContext_;
    std::string oErrorText_;
};

// Position of the first occurrence of `needle` in `text` at or after `start`,
// or -1. Positions beyond 32767 do not fit the result; the rewriting
// operations therefore use their own unlimited search.
std::int16_t s16FindTextIndex(const std::string& text, const std::string& needle, std::int16_t start);

}  // namespace ExpressionParser

#endif
