// A program outside the source tree that uses the installed library.
#include <cellformula.h>

#include <iostream>
#include <memory>

int main() {
    ExpressionParser::ParserDriver driver;
    std::unique_ptr<ASTNode> root(driver.poParseExpression("=SUM(1;2)*2"));
    if (!root) {
        std::cerr << "consumer: " << driver.oGetErrorMsg() << '\n';
        return 1;
    }
    const double value = root->f64Evaluate();
    std::cout << value << '\n';
    return value == 6.0 && root->errType() == ErrNone ? 0 : 1;
}
