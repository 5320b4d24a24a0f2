#include "structuraledit.h"

#include <vector>

#include "cellreferences.h"
#include "editrule.h"
#include "sstringify.h"

namespace ExpressionParser {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

// Writes one corner: a part whose coordinate did not change keeps its bytes,
// a moved part keeps its "$" and the case of its letters.
void writeCorner(std::string_view written, const CellCorner& old, const CellCorner& moved, std::string& out) {
    std::size_t rowPart = 1;  // where the row's "$" or first digit stands
    while (written[rowPart] != '$' && !isDigit(written[rowPart])) ++rowPart;
    const std::string_view columnText = written.substr(0, rowPart);
    const std::string_view rowText = written.substr(rowPart);
    if (moved.s32Column == old.s32Column) {
        out.append(columnText);
    } else {
        if (old.bColumnAbsolute) out += '$';
        const bool lower = isLower(columnText.back());
        for (const char letter : SpreadSheetHelper::oGetLetterByIdx(moved.s32Column)) {
            out += lower ? static_cast<char>(letter - 'A' + 'a') : letter;
        }
    }
    if (moved.s32Row == old.s32Row) {
        out.append(rowText);
    } else {
        if (old.bRowAbsolute) out += '$';
        out += QuandelUtils::sstringify(moved.s32Row + 1);
    }
}

}  // namespace

std::string applyEdit(const std::string& formula, const EditRule& rule) {
    const std::vector<CellReference> references = CellReferences::oGetReferences(formula);
    const std::string_view text(formula);
    std::string out;
    out.reserve(formula.size() + 8);
    std::size_t copied = 0;
    for (const CellReference& reference : references) {
        out.append(text.substr(copied, reference.u64Begin - copied));
        copied = reference.u64End;
        CellCorner from{};
        CellCorner to{};
        if (!rule.mapReference(reference, from, to)) {
            out += "#REF";
            continue;
        }
        const CellCorner& oldFrom = reference.oFrom;
        writeCorner(text.substr(oldFrom.u64Begin, oldFrom.u64End - oldFrom.u64Begin), oldFrom, from, out);
        if (!reference.bIsRange) continue;
        const CellCorner& oldTo = reference.oTo;
        out.append(text.substr(oldFrom.u64End, oldTo.u64Begin - oldFrom.u64End));  // ":" and any blanks
        writeCorner(text.substr(oldTo.u64Begin, oldTo.u64End - oldTo.u64Begin), oldTo, to, out);
    }
    out.append(text.substr(copied));
    return out;
}

std::string StructuralEdit::oInsertRows(const std::string& formula, std::int32_t row, std::int32_t count,
                                        SheetSize size) {
    return applyEdit(formula, EditRule::insertRows(row, count, size));
}

std::string StructuralEdit::oDeleteRows(const std::string& formula, std::int32_t row, std::int32_t count,
                                        SheetSize size) {
    return applyEdit(formula, EditRule::deleteRows(row, count, size));
}

std::string StructuralEdit::oInsertColumns(const std::string& formula, std::int32_t column, std::int32_t count,
                                           SheetSize size) {
    return applyEdit(formula, EditRule::insertColumns(column, count, size));
}

std::string StructuralEdit::oDeleteColumns(const std::string& formula, std::int32_t column, std::int32_t count,
                                           SheetSize size) {
    return applyEdit(formula, EditRule::deleteColumns(column, count, size));
}

std::string StructuralEdit::oCopyFormula(const std::string& formula, std::int32_t rows, std::int32_t columns,
                                         SheetSize size) {
    return applyEdit(formula, EditRule::copy(rows, columns, size));
}

std::string StructuralEdit::oMoveBlock(const std::string& formula, const SpreadSheetHelper::Selection& block,
                                       std::int32_t rows, std::int32_t columns, SheetSize size) {
    return applyEdit(formula, EditRule::move(block, rows, columns, size));
}

}  // namespace ExpressionParser
