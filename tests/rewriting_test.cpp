#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <locale>
#include <random>
#include <string>

#include "parserdriver.h"
#include "spreadsheethelper.h"
#include "sstringify.h"

using ExpressionParser::ParserDriver;

namespace {

using Rewrite = std::function<std::string(const std::string&)>;
Rewrite offset(int rows, int columns) {
    return [=](const std::string& f) { return ParserDriver::oOffsetCellsNames(f, rows, columns); };
}
Rewrite change(int row, int column, int rowChange, int columnChange) {
    return [=](const std::string& f) { return ParserDriver::oChangeCellNames(f, row, column, rowChange, columnChange); };
}
Rewrite wrapper(std::string (*edit)(const std::string&, int), int at) {
    return [=](const std::string& f) { return edit(f, at); };
}
const Rewrite kRowInsertion3 = wrapper(ParserDriver::oChangeCellNamesAfterRowInsertion, 3);
const Rewrite kRowDeletion3 = wrapper(ParserDriver::oChangeCellNamesAfterRowDeletion, 3);
const Rewrite kColumnInsertion1 = wrapper(ParserDriver::oChangeCellNamesAfterColumnInsertion, 1);
const Rewrite kColumnDeletion1 = wrapper(ParserDriver::oChangeCellNamesAfterColumnDeletion, 1);
const Rewrite kEveryOperation[] = {offset(1, 1), offset(-1, -1), kRowInsertion3, kRowDeletion3, kColumnInsertion1,
                                   kColumnDeletion1};

struct Case { const char* formula; Rewrite rewrite; const char* expected; };
const Case kCases[] = {
    {"=A1+$B$2+C$3", offset(1, 1), "=B2+$B$2+D$3"}, {"=A1", offset(-1, 0), "=#REF"}, {"=B5", offset(0, -2), "=#REF"},
    {"=Z1", offset(0, 1), "=AA1"}, {"=A2+A3+$A$3", kRowInsertion3, "=A2+A4+$A$3"},
    {"=A2+A3+A4", kRowDeletion3, "=A2+#REF+A3"}, {"=$A3+A$3+$A4", kRowDeletion3, "=#REF+A$3+$A3"},
    {"=A1+B1+C1", kColumnInsertion1, "=A1+C1+D1"}, {"=A1+B1+C1", kColumnDeletion1, "=A1+#REF+B1"},
    {"=A1+C3", change(2, 1, 5, 5), "=A1+H8"}, {"=B2", change(1, 1, -2, -2), "=B2"},
    {"=SUM(A1:B2)", offset(1, 0), "=SUM(A2:B3)"}, {"=input(\"A1\")+A1", offset(1, 0), "=input(\"A1\")+A2"},
    {"=IF(A1>0;\"B2\";\"x\")", offset(1, 0), "=IF(A2>0;\"B3\";\"x\")"},
    // Function names that look like references, and the upper-case named input.
    {"=ATAN2(A1;B1)+LOG10(C1)", offset(1, 1), "=ATAN2(B2;C2)+LOG10(D2)"},
    {"=INPUT(\"A1\")+A1", offset(1, 0), "=INPUT(\"A1\")+A2"},
    // Scan details: unclosed input, a digit before a capital, rejected markers.
    {"=input(A1", offset(1, 0), "=input(A2"}, {"=A1B2", offset(1, 0), "=A1B3"},
    {"=$A$1+$1+A$0+$$A1", offset(1, 1), "=$A$1+$1+A$0+$$A2"}, {"", offset(1, 1), ""},
    // Coordinates beyond int: a written row that does not fit is kept, a moved one leaves the sheet.
    {"=A99999999999+B1", offset(1, 0), "=A99999999999+B2"}, {"=A2", offset(INT_MAX, 0), "=#REF"},
    {"=B1", offset(0, INT_MAX), "=#REF"}, {"=B2", offset(INT_MIN, INT_MIN), "=#REF"},
    {"=A2147483647", offset(-1, 0), "=A2147483646"}, {"=A2147483647", kRowInsertion3, "=#REF"},
    {"=FXSHRXX1+FXSHRXY1+AAAAAAAAAAAAAAAAAAAAAAAAAA1", offset(1, -1), "=FXSHRXW2+FXSHRXY1+AAAAAAAAAAAAAAAAAAAAAAAAAA1"},
    // A row marker between letters fixes the row; the letters close up around it.
    {"=A$B1+$A$B1", offset(1, 1), "=AC$1+$AB$1"}, {"=AB12C", offset(1, 1), "=AC22C"},
};

TEST(Rewriting, EdgeCases) {
    for (const Case& c : kCases) {
        EXPECT_EQ(c.rewrite(c.formula), c.expected) << c.formula;
    }
    for (const Rewrite& rewrite : kEveryOperation) {
        for (const char* kept : {"A1+B2", "=a1", "=2*RATE", "=HEX2DEC(\"FF\")"}) EXPECT_EQ(rewrite(kept), kept);
        EXPECT_EQ(rewrite("=DEC2BIN(A5)").substr(0, 9), "=DEC2BIN(");
    }
}

// A moved column is spelled as the cell-name helper spells it, up to the last column.
TEST(Rewriting, MovedColumnLetters) {
    for (long long column = 0; column <= INT_MAX; column += column < 20000 ? 1 : 104729) {
        const int index = static_cast<int>(column);
        ASSERT_EQ(ParserDriver::oOffsetCellsNames("=A1", 0, index), "=" + SpreadSheetHelper::oGetLetterByIdx(index) + "1");
    }
    EXPECT_EQ(ParserDriver::oOffsetCellsNames("=A1", 0, INT_MAX), "=FXSHRXX1");
}

TEST(Rewriting, LongFormula) {
    std::string formula = "=" + std::string(50000, 'Q') + "+";
    std::string expected = formula;
    for (int i = 0; i < 5000; ++i) {
        formula += "A1+";
        expected += "A2+";
    }
    EXPECT_EQ(ParserDriver::oOffsetCellsNames(formula + "input(\"B1\")+B1", 1, 0), expected + "input(\"B1\")+B2");
}

// A host locale that groups thousands reaches moved row numbers, however long their text grows.
class Grouping : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Rewriting, RowNumbersIgnoreHostLocale) {
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    const std::string moved = ParserDriver::oOffsetCellsNames("=A999+B2147483646+A999+$C$5", 1, 0);
    std::locale::global(previous);
    EXPECT_EQ(moved, "=A1000+B2147483647+A1000+$C$5");
}

TEST(Rewriting, FindTextIndex) {
    using ExpressionParser::s16FindTextIndex;
    const std::string far = std::string(32767, '.') + "ab.";
    EXPECT_EQ(s16FindTextIndex("abcabc", "bc", 0), 1);
    EXPECT_EQ(s16FindTextIndex("abcabc", "bc", 2), 4);
    EXPECT_EQ(s16FindTextIndex("abc", "", 3), 3);
    EXPECT_EQ(s16FindTextIndex("abc", "c", 4), -1);
    EXPECT_EQ(s16FindTextIndex("abc", "a", -1), -1);
    EXPECT_EQ(s16FindTextIndex(far, "ab", 32767), 32767);
    EXPECT_EQ(s16FindTextIndex(far, "b.", 0), -1);
}

// References that stay on the sheet come back unchanged after moving there and back.
TEST(Rewriting, OffsetThereAndBack) {
    std::mt19937 random(12345);
    const auto pick = [&random](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const char* const prefixes[] = {"", "SUM(", "ATAN2(1;", "\"x\"&", "input(\"C3\")+", "2.5*", "INPUT(\"D4\")&"};
    const char* const operators[] = {"+", "-", "*", ";", ":", ")"};
    for (int round = 0; round < 300; ++round) {
        const int rows = pick(1, 50) * (pick(0, 1) ? 1 : -1);
        const int columns = pick(-30, 30);
        std::string formula = "=";
        for (int term = pick(1, 12); term > 0; --term) {
            formula += prefixes[pick(0, 6)];
            formula += std::string(pick(0, 1) ? "$" : "") + SpreadSheetHelper::oGetLetterByIdx(pick(30, 20000));
            formula += std::string(term > 1 && pick(0, 1) ? "$" : "") + QuandelUtils::sstringify(pick(51, 1000000));
            formula += operators[pick(0, 5)];
        }
        const std::string moved = ParserDriver::oOffsetCellsNames(formula, rows, columns);
        EXPECT_NE(moved, formula);
        EXPECT_EQ(ParserDriver::oOffsetCellsNames(moved, -rows, -columns), formula);
    }
}

}  // namespace
