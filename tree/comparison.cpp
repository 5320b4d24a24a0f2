#include "comparison.h"

#include "operation.h"
#include "program.h"
#include "rules.h"

using cellformula::Operation;

namespace cellformula {

namespace {

// Both numbers: the number test; otherwise the texts' three-way order.
template <typename NumberTest, typename TextTest>
double compared(Operands& operands, NumberTest numberTest, TextTest textTest) {
    if (operands.type(0) == ExprNumber && operands.type(1) == ExprNumber) {
        const double left = operands.number(0);
        return numberTest(left, operands.number(1)) ? 1.0 : 0.0;
    }
    const std::string& left = operands.text(0);
    return textTest(left, operands.text(1)) ? 1.0 : 0.0;
}

// A text operand is no error for a comparison; only one without a type is.
std::uint32_t comparisonError(Operands& operands) {
    return operandsError(operands, &hasNoType);
}

constexpr Asks kComparedAsks{kType | kNumber | kTextIfAnyNotNumber, kType | kNumber | kTextIfAnyNotNumber};

}  // namespace

extern const Rules kGreaterRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kComparedAsks, kNothing}, nullptr, &comparisonError,
    [](Operands& operands) {
        return compared(
            operands, [](double left, double right) { return left > right; },
            [](const std::string& left, const std::string& right) { const int order = left.compare(right); return order > 0; });
    },
    nullptr};

extern const Rules kLessRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kComparedAsks, kNothing}, nullptr, &comparisonError,
    [](Operands& operands) {
        return compared(
            operands, [](double left, double right) { return left < right; },
            [](const std::string& left, const std::string& right) { const int order = left.compare(right); return order < 0; });
    },
    nullptr};

extern const Rules kGreatEqualRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kComparedAsks, kNothing}, nullptr, &comparisonError,
    [](Operands& operands) {
        return compared(
            operands, [](double left, double right) { return left >= right; },
            [](const std::string& left, const std::string& right) { const int order = left.compare(right); return order >= 0; });
    },
    nullptr};

extern const Rules kLessEqualRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kComparedAsks, kNothing}, nullptr, &comparisonError,
    [](Operands& operands) {
        return compared(
            operands, [](double left, double right) { return left <= right; },
            [](const std::string& left, const std::string& right) { const int order = left.compare(right); return order <= 0; });
    },
    nullptr};

extern const Rules kEqualRules{
    Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kComparedAsks, kNothing}, nullptr, &comparisonError,
    [](Operands& operands) {
        return compared(
            operands, [](double left, double right) { return left == right; },
            [](const std::string& left, const std::string& right) { return left == right; });
    },
    nullptr};

}  // namespace cellformula

CNGreater::CNGreater(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "> greater") {}
double CNGreater::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Greater); }
std::uint32_t CNGreater::errType() { return cellformula::errorAs(*this, Operation::Greater); }
Operation CNGreater::operation() const { return Operation::Greater; }

CNLess::CNLess(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "< less") {}
double CNLess::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Less); }
std::uint32_t CNLess::errType() { return cellformula::errorAs(*this, Operation::Less); }
Operation CNLess::operation() const { return Operation::Less; }

CNGreatEqual::CNGreatEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, ">= great equal") {}
double CNGreatEqual::f64Evaluate() const { return cellformula::numberAs(*this, Operation::GreatEqual); }
std::uint32_t CNGreatEqual::errType() { return cellformula::errorAs(*this, Operation::GreatEqual); }
Operation CNGreatEqual::operation() const { return Operation::GreatEqual; }

CNLessEqual::CNLessEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "<= less equal") {}
double CNLessEqual::f64Evaluate() const { return cellformula::numberAs(*this, Operation::LessEqual); }
std::uint32_t CNLessEqual::errType() { return cellformula::errorAs(*this, Operation::LessEqual); }
Operation CNLessEqual::operation() const { return Operation::LessEqual; }

CNEqual::CNEqual(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "= equal") {}
double CNEqual::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Equal); }
std::uint32_t CNEqual::errType() { return cellformula::errorAs(*this, Operation::Equal); }
Operation CNEqual::operation() const { return Operation::Equal; }
