#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "spreadsheethelper.h"

using namespace SpreadSheetHelper;

namespace {

struct Column { const char* letters; std::uint32_t index; };
const Column kColumns[] = {{"A", 0}, {"Z", 25}, {"AA", 26}, {"AB", 27}, {"AZ", 51}, {"BA", 52},
                           {"ZZ", 701}, {"AAA", 702}, {"ZZZZZZ", 321272405}};

TEST(SpreadsheetLetters, ConvertBothWays) {
    for (const Column& c : kColumns) {
        SCOPED_TRACE(c.letters);
        EXPECT_EQ(u32GetIdxByLetter(c.letters), c.index);
        EXPECT_EQ(oGetLetterByIdx(static_cast<int>(c.index)), c.letters);
    }
    EXPECT_EQ(u32GetIdxByLetter(""), 4294967295u);
    EXPECT_EQ(oGetLetterByIdx(-1), "");
    for (int index = 0; index <= 321272405; index += (index < 20000 ? 1 : 7919)) {
        ASSERT_EQ(u32GetIdxByLetter(oGetLetterByIdx(index)), static_cast<std::uint32_t>(index)) << index;
    }
}

struct Name { const char* name; int column; int row; };
const Name kAccepted[] = {{"A1", 0, 0}, {"b12", 1, 11}, {"$C$3", 2, 2}, {"AB10", 27, 9}, {"A$1", 0, 0},
                          {"$A1", 0, 0}, {"zz100", 701, 99}, {"A2147483647", 0, 2147483646}, {"ZZZZZZ1", 321272405, 0}};
const char* const kRejected[] = {"", "A", "1", "$1", "A0", "A01", "A$0", "$$A1", "A$$1", "A1$", "A1B", "A 1", "A-1",
                                 "A$B1", "A2147483648", "A99999999999999999999", "ZZZZZZZZ1"};

TEST(SpreadsheetNames, AcceptAndReject) {
    for (const Name& c : kAccepted) {
        int column = -7, row = -7;
        EXPECT_EQ(s8CreateColumnLine(c.name, column, row), 0) << c.name;
        EXPECT_EQ(std::make_pair(column, row), std::make_pair(c.column, c.row)) << c.name;
    }
    for (const char* name : kRejected) {
        int column = -7, row = -7;
        EXPECT_EQ(s8CreateColumnLine(name, column, row), -1) << name;
        EXPECT_EQ(std::make_pair(column, row), std::make_pair(-7, -7)) << name;
    }
}

TEST(SpreadsheetSelection, KeepsCornersAsGiven) {
    const Selection s(5, -2, 1, 40);
    EXPECT_EQ((std::vector<int>{s.s32RowStart(), s.s32ColStart(), s.s32RowEnd(), s.s32ColEnd()}),
              (std::vector<int>{5, -2, 1, 40}));
}

}  // namespace
