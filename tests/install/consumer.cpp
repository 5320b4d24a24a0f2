// A program outside the source tree that uses the installed library through
// the umbrella header and a single header.
#include <cellformula/cellformula.h>
#include <cellformula/spreadsheethelper.h>

#include <iostream>
#include <memory>
#include <sstream>

static_assert(CELLFORMULA_VERSION_MAJOR >= 2, "the version header is part of the umbrella");

int main() {
    ExpressionParser::ParserDriver driver;
    std::ostringstream errors;
    driver.vSetErrorStream(&errors);
    std::unique_ptr<ASTNode> failed(driver.poParseExpression("=1+"));
    if (failed || errors.str().empty()) {
        std::cerr << "consumer: the error line did not reach the host's stream\n";
        return 1;
    }
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=SUM(1;2)*2"));
    if (!root) {
        std::cerr << "consumer: " << driver.oGetErrorMsg() << '\n';
        return 1;
    }
    const double value = root->f64Evaluate();
    std::cout << value << '\n';
    return value == 6.0 && root->errType() == ErrNone && SpreadSheetHelper::oGetLetterByIdx(26) == "AA" ? 0 : 1;
}
