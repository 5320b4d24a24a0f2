#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "cellreferences.h"
#include "structuraledit.h"

using ExpressionParser::CellReference;
using ExpressionParser::CellReferences;
using ExpressionParser::SheetSize;
using ExpressionParser::StructuralEdit;
using SpreadSheetHelper::Selection;

namespace {

// Rows and columns below are indices from 0: row 2 is the row written "3".
struct Case { const char* formula; int at; int count; const char* expected; };

void runTable(const char* operation, const Case* begin, const Case* end,
              std::string (*edit)(const std::string&, std::int32_t, std::int32_t, SheetSize)) {
    for (const Case* c = begin; c != end; ++c) {
        SCOPED_TRACE(std::string(operation) + " " + c->formula + " at " + std::to_string(c->at) + " count " +
                     std::to_string(c->count));
        EXPECT_EQ(edit(c->formula, c->at, c->count, SheetSize{}), c->expected);
    }
}

const Case kInsertRows[] = {
    {"=B2/$B$5", 3, 1, "=B2/$B$6"},                 // absolute references move too
    {"=A3+A4+$A$4+A$4+$A4", 3, 2, "=A3+A6+$A$6+A$6+$A6"},
    {"=SUM(A3:A5)", 3, 1, "=SUM(A3:A6)"},            // inserted inside: the range grows
    {"=SUM(A3:A5)", 2, 1, "=SUM(A4:A6)"},            // before its first row: it moves
    {"=SUM(A3:A5)", 5, 1, "=SUM(A3:A5)"},            // after its last row: untouched
    {"=SUM(A5:A3)", 3, 1, "=SUM(A6:A3)"},            // corners keep their written order
    {"=\"A3\"&a3&input(\"A3\")&A3", 0, 1, "=\"A3\"&a4&input(\"A3\")&A4"},  // texts and inputs stay
    {"=tax_A1+A1_+A1", 0, 1, "=tax_A1+A1_+A2"},      // names that are no cell names stay
    {"=FY2024", 0, 1, "=FY2025"},                    // column FY's cell, as the parser reads it
    {"=A1048576", 0, 1, "=#REF"},                    // pushed off the sheet
    {"=SUM(A2:A1048576)", 5, 3, "=SUM(A2:A1048576)"},  // a range's end stops at the last row
    {"=SUM(A1048576:A1048576)", 0, 1, "=SUM(#REF)"},
    {"=A1+1", 1048576, 1, "=A1+1"},                  // after the last row: nothing moves
    {"=SUM(A1 : B2)*2", 0, 1, "=SUM(A2 : B3)*2"},    // blanks around ":" kept
    {"=1+", 0, 1, "=1+"},                            // a broken formula keeps its bytes
};

const Case kDeleteRows[] = {
    {"=SUM(A3:A5)", 2, 1, "=SUM(A3:A4)"},            // its first row deleted: it shrinks
    {"=SUM(A3:A5)", 4, 1, "=SUM(A3:A4)"},            // its last row deleted
    {"=SUM(A3:A5)", 3, 1, "=SUM(A3:A4)"},            // a row inside
    {"=SUM(A3:A5)", 2, 3, "=SUM(#REF)"},             // all its rows: #REF
    {"=SUM(A3:A5)", 0, 2, "=SUM(A1:A3)"},
    {"=SUM(A3:A5)", 1, 3, "=SUM(A2:A2)"},
    {"=SUM(B7:A1)", 2, 2, "=SUM(B5:A1)"},
    {"=A2+A3+$A$4", 2, 1, "=A2+#REF+$A$3"},
    {"=a10", 0, 1, "=a9"},
    {"=A1048576", 1048575, 1, "=#REF"},              // the last row
    {"=A1048576+A1", 0, 1, "=A1048575+#REF"},        // row 1
};

const Case kInsertColumns[] = {
    {"=A1+B1+$C$1", 1, 1, "=A1+C1+$D$1"},
    {"=SUM(A1:C1)", 1, 2, "=SUM(A1:E1)"},
    {"=Z1+z2", 25, 1, "=AA1+aa2"},
    {"=XFD1", 0, 1, "=#REF"},
};

const Case kDeleteColumns[] = {
    {"=A1+B1+C1", 1, 1, "=A1+#REF+B1"},
    {"=SUM(A1:C3)", 0, 1, "=SUM(A1:B3)"},
    {"=SUM(B1:C3)", 1, 2, "=SUM(#REF)"},
    {"=AA1", 0, 1, "=Z1"},
};

TEST(StructuralEdit, InsertRows) {
    runTable("insert rows", std::begin(kInsertRows), std::end(kInsertRows), StructuralEdit::oInsertRows);
}
TEST(StructuralEdit, DeleteRows) {
    runTable("delete rows", std::begin(kDeleteRows), std::end(kDeleteRows), StructuralEdit::oDeleteRows);
}
TEST(StructuralEdit, InsertColumns) {
    runTable("insert columns", std::begin(kInsertColumns), std::end(kInsertColumns), StructuralEdit::oInsertColumns);
}
TEST(StructuralEdit, DeleteColumns) {
    runTable("delete columns", std::begin(kDeleteColumns), std::end(kDeleteColumns), StructuralEdit::oDeleteColumns);
}

struct CopyCase { const char* formula; int rows; int columns; const char* expected; };
const CopyCase kCopies[] = {
    {"=A1+$A$1+A$1+$A1", 2, 1, "=B3+$A$1+B$1+$A3"},
    {"=SUM(A1:$B$2)", 1, 1, "=SUM(B2:$B$2)"},
    {"=A2", -1, 0, "=A1"},
    {"=A1+\"A1\"", -1, 0, "=#REF+\"A1\""},
    {"=SUM(A1:B2)", 0, -1, "=SUM(#REF)"},            // one corner leaves: the whole range
    {"=XFD1", 0, 1, "=#REF"},
};

TEST(StructuralEdit, CopyFormula) {
    for (const CopyCase& c : kCopies) {
        SCOPED_TRACE(c.formula);
        EXPECT_EQ(StructuralEdit::oCopyFormula(c.formula, c.rows, c.columns), c.expected);
    }
}

struct MoveCase { const char* formula; Selection block; int rows; int columns; const char* expected; };
const MoveCase kMoves[] = {
    // The block B2:C3 (rows 1-2, columns 1-2) moved 3 down and 1 right.
    {"=B2+$C$3+A1", Selection(1, 1, 2, 2), 3, 1, "=C5+$D$6+A1"},
    {"=SUM(B2:C3)", Selection(1, 1, 2, 2), 3, 1, "=SUM(C5:D6)"},   // wholly inside: follows
    {"=SUM(B2:C4)", Selection(1, 1, 2, 2), 3, 1, "=SUM(B2:C4)"},   // partly inside: stays
    {"=B2", Selection(2, 2, 1, 1), -1, -1, "=A1"},                 // corners in any order
};

TEST(StructuralEdit, MoveBlock) {
    for (const MoveCase& c : kMoves) {
        SCOPED_TRACE(c.formula);
        EXPECT_EQ(StructuralEdit::oMoveBlock(c.formula, c.block, c.rows, c.columns), c.expected);
    }
}

TEST(StructuralEdit, SheetSizeIsAParameter) {
    const SheetSize small{10, 3};
    EXPECT_EQ(StructuralEdit::oInsertRows("=A10+A9", 0, 1, small), "=#REF+A10");
    EXPECT_EQ(StructuralEdit::oInsertColumns("=C1+B1", 0, 1, small), "=#REF+C1");
    EXPECT_EQ(StructuralEdit::oCopyFormula("=A1", 0, 3, small), "=#REF");
}

TEST(StructuralEdit, NonsenseEditsAreRejected) {
    const std::function<void()> kRejected[] = {
        [] { StructuralEdit::oInsertRows("=A1", 0, 0); },
        [] { StructuralEdit::oInsertRows("=A1", 0, -3); },
        [] { StructuralEdit::oDeleteRows("=A1", 0, 0); },
        [] { StructuralEdit::oDeleteColumns("=A1", 2, -1); },
        [] { StructuralEdit::oInsertRows("=A1", -1, 1); },
        [] { StructuralEdit::oInsertRows("=A1", 1048577, 1); },       // beyond the sheet
        [] { StructuralEdit::oDeleteRows("=A1", 1048575, 2); },       // past the last row
        [] { StructuralEdit::oInsertColumns("=A1", 16385, 1); },
        [] { StructuralEdit::oMoveBlock("=A1", Selection(0, 0, 1, 1), -1, 0); },
        [] { StructuralEdit::oCopyFormula("=A1", 1, 1, SheetSize{0, 5}); },
    };
    for (const auto& edit : kRejected) EXPECT_THROW(edit(), std::invalid_argument);
}

// The property: for random formulas and edits, the references read from the
// result are the edit applied to the references read from the input, with
// their "$" markers, and the bytes between references are unchanged.
struct Rect { long firstColumn, firstRow, lastColumn, lastRow; };
bool operator==(const Rect& a, const Rect& b) {
    return a.firstColumn == b.firstColumn && a.firstRow == b.firstRow && a.lastColumn == b.lastColumn &&
           a.lastRow == b.lastRow;
}

Rect rectOf(const CellReference& r) {
    return Rect{std::min(r.oFrom.s32Column, r.oTo.s32Column), std::min(r.oFrom.s32Row, r.oTo.s32Row),
                std::max(r.oFrom.s32Column, r.oTo.s32Column), std::max(r.oFrom.s32Row, r.oTo.s32Row)};
}

std::string markers(const CellReference& r) {
    return std::string{r.oFrom.bColumnAbsolute ? '$' : '.', r.oFrom.bRowAbsolute ? '$' : '.',
                       r.oTo.bColumnAbsolute ? '$' : '.', r.oTo.bRowAbsolute ? '$' : '.'};
}

// Where the lines [first, last] of one axis end up: an insertion moves each
// line and the new lines inside the span join it (a range's end stops at the
// sheet's last line); a deletion keeps the lines that survive. False when
// nothing is left.
bool followLines(long& first, long& last, bool insert, bool range, long at, long count, long limit) {
    if (insert) {
        const auto where = [&](long line) { return line >= at ? line + count : line; };
        first = where(first);
        last = range ? std::min(where(last), limit - 1) : where(last);
        return first < limit;
    }
    long newFirst = -1;
    long newLast = -1;
    for (long line = first; line <= last; ++line) {
        if (line >= at && line < at + count) continue;
        const long to = line < at ? line : line - count;
        if (newFirst < 0) newFirst = to;
        newLast = to;
    }
    first = newFirst;
    last = newLast;
    return newFirst >= 0;
}

std::string randomFormula(std::mt19937& random) {
    const char* const pieces[] = {"+", "*", "-", ";", "(", ")", "\"A1\"", "SUM(", "FY24", " ", "2", ":"};
    std::string formula = "=";
    const int count = static_cast<int>(random() % 12);
    for (int i = 0; i < count; ++i) {
        if (random() % 2 == 0) {
            formula += pieces[random() % std::size(pieces)];
            continue;
        }
        // Columns A..Z and rows 1..12 in a sheet of 12 rows and 26 columns, with markers and either case.
        const char letter = static_cast<char>((random() % 2 ? 'A' : 'a') + random() % 26);
        formula += std::string(random() % 3 == 0 ? "$" : "") + letter + (random() % 3 == 0 ? "$" : "") +
                   std::to_string(1 + random() % 12);
    }
    return formula;
}

TEST(StructuralEdit, ReferencesFollowTheEditAndNothingElseChanges) {
    const SheetSize size{12, 26};
    std::mt19937 random(20261124);
    for (int trial = 0; trial < 4000; ++trial) {
        const std::string formula = randomFormula(random);
        const bool rows = random() % 2 == 0;
        const bool insert = random() % 2 == 0;
        const long limit = rows ? size.s32Rows : size.s32Columns;
        const long at = static_cast<long>(random() % static_cast<unsigned long>(limit));
        const long count = 1 + static_cast<long>(random() % static_cast<unsigned long>(limit - at));
        SCOPED_TRACE(formula + (insert ? " insert " : " delete ") + (rows ? "rows " : "columns ") +
                     std::to_string(at) + " " + std::to_string(count));
        const auto edit = rows ? (insert ? StructuralEdit::oInsertRows : StructuralEdit::oDeleteRows)
                               : (insert ? StructuralEdit::oInsertColumns : StructuralEdit::oDeleteColumns);
        const std::string result = edit(formula, static_cast<std::int32_t>(at), static_cast<std::int32_t>(count), size);

        std::vector<Rect> expected;
        std::vector<std::string> expectedMarkers;
        std::vector<std::string> gaps;  // the bytes around references, "#REF" standing in for a lost one
        std::string gap;
        std::size_t copied = 0;
        for (const CellReference& reference : CellReferences::oGetReferences(formula)) {
            gap += formula.substr(copied, reference.u64Begin - copied);
            copied = reference.u64End;
            Rect rect = rectOf(reference);
            long& first = rows ? rect.firstRow : rect.firstColumn;
            long& last = rows ? rect.lastRow : rect.lastColumn;
            if (followLines(first, last, insert, reference.bIsRange, at, count, limit)) {
                expected.push_back(rect);
                expectedMarkers.push_back(markers(reference));
                gaps.push_back(gap);
                gap.clear();
            } else {
                gap += "#REF";
            }
        }
        gaps.push_back(gap + formula.substr(copied));

        const std::vector<CellReference> after = CellReferences::oGetReferences(result);
        ASSERT_EQ(after.size(), expected.size()) << result;
        std::size_t resultCopied = 0;
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_TRUE(rectOf(after[i]) == expected[i]) << result << " reference " << i;
            EXPECT_EQ(markers(after[i]), expectedMarkers[i]) << result;
            EXPECT_EQ(result.substr(resultCopied, after[i].u64Begin - resultCopied), gaps[i]) << result;
            resultCopied = after[i].u64End;
        }
        EXPECT_EQ(result.substr(resultCopied), gaps.back()) << result;
    }
}

}  // namespace

namespace {

// Rows inserted and then deleted again give the text back byte for byte, as
// long as no reference came near enough to the sheet's end to be pushed off.
TEST(StructuralEdit, DeletingInsertedRowsUndoesTheInsertion) {
    const SheetSize size{12, 26};
    std::mt19937 random(11);
    int checked = 0;
    for (int trial = 0; trial < 2000; ++trial) {
        const std::string formula = randomFormula(random);
        const auto at = static_cast<std::int32_t>(random() % 12);
        const auto count = static_cast<std::int32_t>(1 + random() % 3);
        bool clear = true;
        for (const CellReference& reference : CellReferences::oGetReferences(formula)) {
            clear = clear && std::max(reference.oFrom.s32Row, reference.oTo.s32Row) < size.s32Rows - count;
        }
        if (!clear || at + count > size.s32Rows) continue;
        const std::string inserted = StructuralEdit::oInsertRows(formula, at, count, size);
        EXPECT_EQ(StructuralEdit::oDeleteRows(inserted, at, count, size), formula) << inserted;
        ++checked;
    }
    EXPECT_GT(checked, 200);
}

}  // namespace
