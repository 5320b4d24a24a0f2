// A formula means the same whatever locale the host has set: under a locale
// with a decimal comma and digit grouping, set through the C library or as the
// C++ global locale, every result is the classic locale's.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "sstringify.h"
#include "testhost.h"

using ExpressionParser::ParserDriver;

namespace {

struct FormulaCase {
    std::string formula;
    const char* result;  // the text, or the error message after "error: ", and the cells asked for
};

const FormulaCase kFormulas[] = {
    {"=1.5+2", "3.5"},
    {"1.5", "1.5"},
    {"1,5", "error: "},
    {"=1234.5", "1234.5"},
    {"=1234567.0*1000", "1.23457e+09"},
    {"=TEXT(1234.5;\"0000.00\")", "1234.50"},
    {"=\"n=\"+1234.5", "n=1234.5"},
    {"=LEFT(1234.5;6)", "1234.5"},
    {"=SUM(A999:A1001)", "1001.5 A999 A1000 A1001"},
    {"=MAX(b1:a2)", "2000.5 A1 B1 A2 B2"},
    {"=1" + std::string(1234, ' ') + "+", "error: 1.1238: syntax error, unexpected end of file"},
};

struct RewriteCase {
    const char* formula;
    int rows;
    int columns;
    const char* rewritten;
};

const RewriteCase kRewrites[] = {
    {"=A999+A1000", 1, 0, "=A1000+A1001"},
    {"=SUM(A999:B1001)*Z9", 1, 1, "=SUM(B1000:C1002)*AA10"},
    {"=$A$999+A2147483646", 1, 0, "=$A$999+A2147483647"},
};

std::string resultOf(const FormulaCase& c) {
    TestHost host;
    const std::pair<const char*, double> cells[] = {{"A999", 0.5},  {"A1000", 1000}, {"A1001", 1},
                                                    {"A1", 1.5},    {"B1", 2000.5},  {"A2", 3}, {"B2", 4}};
    for (const auto& [name, value] : cells) host.setNumber(name, value);
    ParserDriver driver;
    driver.vSetCalcCollection(&host);
    std::unique_ptr<ASTNode> root(driver.poParseExpression(c.formula));
    std::string result = "error: " + driver.oGetErrorMsg();
    if (root) {
        result = root->exprType() == ExprNumber ? QuandelUtils::sstringify(root->f64Evaluate()) : root->stringEvaluate();
    }
    for (const std::string& name : host.lookups) result += " " + name;
    return result;
}

void expectClassicResults() {
    for (const FormulaCase& c : kFormulas) {
        SCOPED_TRACE(c.formula.substr(0, 30));
        EXPECT_EQ(resultOf(c), c.result);
    }
    for (const RewriteCase& c : kRewrites) {
        SCOPED_TRACE(c.formula);
        EXPECT_EQ(ParserDriver::oOffsetCellsNames(c.formula, c.rows, c.columns), c.rewritten);
    }
    EXPECT_EQ(ParserDriver::oChangeCellNamesAfterRowInsertion("=A999+A1000+$A$1000", 1000), "=A999+A1001+$A$1000");
    // The outline's numbers too, on a stream that carries the global locale.
    ParserDriver driver;
    std::unique_ptr<ASTNode> tree(driver.poParseExpression("=1234.5*2"));
    std::stringstream outline;
    outline.imbue(std::locale());
    tree->vPrintNode(outline, 0);
    EXPECT_EQ(outline.str(), "* multiply\n  1234.5\n  2\n");
}

// A German locale: decimal comma, "." grouping thousands. Made with localedef
// when the machine has not generated it: into the system's locales where we
// may write there, else into a scratch folder named by LOCPATH (glibc's
// newlocale leaks a little memory per call under LOCPATH, so that is the last resort).
class HostLocale : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (findLocale()) return;
        // localedef exits non-zero even for mere warnings, so only the locale's use decides.
        [[maybe_unused]] const int status = std::system("localedef -i de_DE -f UTF-8 de_DE.UTF-8 >/dev/null 2>&1");
        if (findLocale()) return;
        folder_ = std::filesystem::temp_directory_path() / "cellformula-locales";
        std::filesystem::create_directories(folder_);
        const std::string command =
            "localedef -i de_DE -f UTF-8 '" + (folder_ / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
        [[maybe_unused]] const int folderStatus = std::system(command.c_str());
        setenv("LOCPATH", folder_.c_str(), 1);
        findLocale();
    }

    static bool findLocale() {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (usable(name)) {
                name_ = name;
                return true;
            }
        }
        return false;
    }

    static void TearDownTestSuite() {
        if (folder_.empty()) return;
        unsetenv("LOCPATH");
        std::filesystem::remove_all(folder_);
    }

    void SetUp() override {
        if (name_.empty()) {
            GTEST_SKIP() << "no decimal-comma locale: de_DE.UTF-8 is missing and localedef could not make it "
                            "(install the locales package)";
        }
    }

    static bool usable(const char* name) {
        try {
            return std::use_facet<std::numpunct<char>>(std::locale(name)).decimal_point() == ',';
        } catch (const std::runtime_error&) {
            return false;
        }
    }

    static std::string name_;
    static std::filesystem::path folder_;
};

std::string HostLocale::name_;
std::filesystem::path HostLocale::folder_;

TEST_F(HostLocale, ClassicResultsUnderTheCLibraryLocale) {
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, name_.c_str()), nullptr);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);  // the C library really reads a decimal comma
    expectClassicResults();
    std::setlocale(LC_ALL, previous.c_str());
}

TEST_F(HostLocale, ClassicResultsUnderTheGlobalLocale) {
    // A named global locale also sets the C library's, as Qt and GTK hosts do.
    const std::string previousC = std::setlocale(LC_ALL, nullptr);
    const std::locale previous = std::locale::global(std::locale(name_));
    std::ostringstream grouped;
    grouped << 1234.5;
    EXPECT_EQ(grouped.str(), "1.234,5");
    expectClassicResults();
    std::locale::global(previous);
    std::setlocale(LC_ALL, previousC.c_str());
}

TEST(ClassicLocale, Results) { expectClassicResults(); }

}  // namespace
