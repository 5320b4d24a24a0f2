#ifndef CELLFORMULA_OPERATION_H
#define CELLFORMULA_OPERATION_H

// The library's node classes as one list, so that the evaluator, the outline
// and deletion name each class in one place. Never installed.
#include <cstdint>

// X(operation name, class)
#define CELLFORMULA_OPERATIONS(X)                                                                      \
    X(Constant, CNConstant) X(StringConstant, CNStringConstant) X(Pi, CNPi) X(Variable, CNVariable)    \
    X(OneOperand, CNSingleChildNode) X(Negate, CNNegate) X(Sin, CNSin) X(Cos, CNCos) X(Tan, CNTan)     \
    X(Asin, CNAsin) X(Acos, CNAcos) X(Atan, CNAtan) X(Sqrt, CNSqrt) X(Ln, CNLn) X(Not, CNNot)          \
    X(IsError, CNIsError) X(Dec2Bin, CNDec2Bin) X(Bin2Dec, CNBin2Dec) X(Dec2Hex, CNDec2Hex)            \
    X(Hex2Dec, CNHex2Dec) X(Bin2Hex, CNBin2Hex) X(Hex2Bin, CNHex2Bin)                                  \
    X(Operands, CNManyChildrenNode) X(Add, CNAdd) X(Subtract, CNSubtract) X(Multiply, CNMultiply)      \
    X(Divide, CNDivide) X(Modulo, CNModulo) X(Power, CNPower) X(Greater, CNGreater) X(Less, CNLess)    \
    X(GreatEqual, CNGreatEqual) X(LessEqual, CNLessEqual) X(Equal, CNEqual) X(Atan2, CNAtan2)          \
    X(Log, CNLog) X(And, CNAnd) X(Or, CNOr) X(Min, CNMin) X(Max, CNMax) X(Text, CNText)                \
    X(Left, CNLeft) X(Right, CNRight) X(If, CNIf)

namespace cellformula {

enum class Operation : std::uint8_t {
#define CELLFORMULA_ENUMERATE(name, type) name,
    CELLFORMULA_OPERATIONS(CELLFORMULA_ENUMERATE)
#undef CELLFORMULA_ENUMERATE
    // What the evaluator adds to a program besides the library's classes.
    Host,     // a node the library does not know: asked through its public operations
    Absent,   // a missing operand
    Branch,   // IF: run the then-branch or jump to the else-branch
    Jump,     // IF: step over the else-branch
};

}  // namespace cellformula

#endif
