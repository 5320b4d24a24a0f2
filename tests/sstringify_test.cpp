// The one number-to-text conversion writes what a fresh default stream writes
// under the classic locale, whatever the type and whatever global locale the
// host has installed.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <locale>
#include <sstream>
#include <string>

#include "sstringify.h"

namespace {

template <typename Value>
std::string streamed(const Value& value) {
    std::stringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    return stream.str();
}

template <typename Value>
void expectLikeStream(const Value& value) {
    EXPECT_EQ(QuandelUtils::sstringify(value), streamed(value)) << streamed(value);
}

void expectAllLikeStream() {
    for (int value : {0, 7, -1, 1000000, -2147483647, INT_MIN, INT_MAX}) expectLikeStream(value);
    for (long long value : {LLONG_MIN, LLONG_MAX, -1234567890123LL}) expectLikeStream(value);
    expectLikeStream(ULLONG_MAX);
    expectLikeStream(static_cast<short>(-12345));
    expectLikeStream(static_cast<unsigned short>(65535));
    expectLikeStream(4294967295u);
    // Character types and bool are written as themselves by a stream.
    expectLikeStream('A');
    expectLikeStream(static_cast<signed char>('b'));
    expectLikeStream(static_cast<unsigned char>('c'));
    expectLikeStream(true);
    for (double value :
         {1234567.0, 1.0 / 3, 1234.5, -0.0, 999999.5, 1e-5, 1e300, HUGE_VAL, -HUGE_VAL, double(NAN), -double(NAN)}) {
        expectLikeStream(value);
    }
}

TEST(Sstringify, MatchesDefaultStream) { expectAllLikeStream(); }

// A host locale that groups thousands, as some desktop applications install.
class Grouping : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Sstringify, IgnoresHostLocale) {
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    std::stringstream hostStream;
    hostStream << 1234567;
    EXPECT_EQ(hostStream.str(), "1'234'567");  // the locale really groups
    expectAllLikeStream();
    EXPECT_EQ(QuandelUtils::sstringify(1234567), "1234567");
    EXPECT_EQ(QuandelUtils::sstringify(1234.5), "1234.5");
    std::locale::global(previous);
}

}  // namespace
