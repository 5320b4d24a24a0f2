// Where the driver's error lines go: standard error by default, a host's own
// stream, or nowhere; the error text is the same in every case.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "testhost.h"

namespace {

struct FailingFormula {
    const char* formula;
    const char* errorText;
};

const FailingFormula kFailures[] = {
    {"=1+", "1.4: syntax error, unexpected end of file"},
    {"=MAX(1,2)", "1.7: syntax error, unexpected invalid token, expecting ')' or ';'"},
    {"=SUM(A0:B2)", "Invalid cell name: \"A0\""},
};

enum class Channel { Default, OwnStream, Silenced };

// Parses the formula with the channel set up as asked and returns what reached
// standard error and the host's stream.
struct Written {
    std::string standardError;
    std::string ownStream;
    std::string errorText;
};

Written parseWith(Channel channel, const std::string& formula) {
    ExpressionParser::ParserDriver driver;
    std::ostringstream own;
    if (channel == Channel::OwnStream) driver.vSetErrorStream(&own);
    if (channel == Channel::Silenced) driver.vSetErrorStream(nullptr);
    testing::internal::CaptureStderr();
    std::unique_ptr<ASTNode> root(driver.poParseExpression(formula));
    Written written;
    written.standardError = testing::internal::GetCapturedStderr();
    written.ownStream = own.str();
    written.errorText = driver.oGetErrorMsg();
    EXPECT_EQ(root, nullptr);
    return written;
}

TEST(ErrorStream, DefaultWritesEachMessageToStandardError) {
    for (const FailingFormula& c : kFailures) {
        SCOPED_TRACE(c.formula);
        const Written written = parseWith(Channel::Default, c.formula);
        EXPECT_EQ(written.errorText, c.errorText);
        EXPECT_EQ(written.standardError, std::string(c.errorText) + "\n");
    }
}

TEST(ErrorStream, OwnStreamTakesTheLinesInsteadOfStandardError) {
    for (const FailingFormula& c : kFailures) {
        SCOPED_TRACE(c.formula);
        const Written written = parseWith(Channel::OwnStream, c.formula);
        EXPECT_EQ(written.errorText, c.errorText);
        EXPECT_EQ(written.ownStream, std::string(c.errorText) + "\n");
        EXPECT_EQ(written.standardError, "");
    }
}

TEST(ErrorStream, SilencedKeepsTheErrorText) {
    for (const FailingFormula& c : kFailures) {
        SCOPED_TRACE(c.formula);
        const Written written = parseWith(Channel::Silenced, c.formula);
        EXPECT_EQ(written.errorText, c.errorText);
        EXPECT_EQ(written.standardError, "");
    }
}

TEST(ErrorStream, ChannelCanBeRestoredAndOneStreamServesManyParses) {
    ExpressionParser::ParserDriver driver;
    std::ostringstream own;
    driver.vSetErrorStream(&own);
    std::unique_ptr<ASTNode>(driver.poParseExpression("=1+"));
    std::unique_ptr<ASTNode>(driver.poParseExpression("=("));
    EXPECT_EQ(own.str(),
              "1.4: syntax error, unexpected end of file\n"
              "1.3: syntax error, unexpected end of file\n");
    driver.vSetErrorStream(&std::cerr);
    testing::internal::CaptureStderr();
    std::unique_ptr<ASTNode>(driver.poParseExpression("=1+"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "1.4: syntax error, unexpected end of file\n");
}

}  // namespace
