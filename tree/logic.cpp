#include "logic.h"

#include "numbers.h"
#include "operation.h"
#include "program.h"
#include "rules.h"
#include "treewalks.h"

using cellformula::Operation;

namespace cellformula {

namespace {

// AND and OR read operands in order until one decides: `decisive` is the
// truth that ends the reading, and the result when it does.
template <bool Decisive>
double decided(Operands& operands) {
    const std::size_t count = operands.isList() ? operands.count() : 2;
    for (std::size_t i = 0; i < count; ++i) {
        if ((operands.number(i) != 0.0) == Decisive) return Decisive ? 1.0 : 0.0;
    }
    return Decisive ? 0.0 : 1.0;
}

// MIN and MAX reduce from the first value on.
template <double (*Keep)(double, double)>
double reduced(Operands& operands) {
    double kept = operands.number(0);
    const std::size_t count = operands.isList() ? operands.count() : 2;
    for (std::size_t i = 1; i < count; ++i) kept = Keep(kept, operands.number(i));
    return kept;
}

std::uint32_t numbersError(Operands& operands) {
    return operandsError(operands, &isNotNumber);
}

// IF: operand 0 is the condition, operand 1 the chosen branch, absent when
// the condition picks a branch the formula leaves out.
std::uint32_t conditionalType(Operands& operands) {
    if (operands.absent(0)) return ExprNoType;
    operands.number(0);  // a condition whose value raises leaves IF without a type
    return operands.absent(1) ? ExprNoType : operands.type(1);
}

std::uint32_t conditionalError(Operands& operands) {
    if (operands.absent(0)) return ErrWrongType;
    const std::uint32_t error = operands.error(0);
    if (error != ErrNone) return error;
    if (operands.type(0) != ExprNumber) return ErrWrongType;
    return operands.absent(1) ? ErrWrongType : operands.error(1);
}

double conditionalNumber(Operands& operands) {
    if (operands.absent(0)) return 0.0;
    const double condition = operands.number(0);
    if (operands.absent(1)) return condition != 0.0 ? 1.0 : 0.0;
    return operands.number(1);
}

void conditionalText(Operands& operands, std::string& text) {
    if (operands.absent(0)) return;
    operands.number(0);
    if (!operands.absent(1)) text = operands.takeText(1);
}

}  // namespace

extern const Rules kAndRules{Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                             &numbersError, &decided<false>, nullptr};
extern const Rules kOrRules{Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                            &numbersError, &decided<true>, nullptr};
extern const Rules kMinRules{Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                             &numbersError, &reduced<&smaller>, nullptr};
extern const Rules kMaxRules{Shape::Pair, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                             &numbersError, &reduced<&larger>, nullptr};
extern const Rules kNotRules{Shape::One, Kind::Number, {kNothing, kTypesErrors, kNumbers, kNothing}, nullptr,
                             &oneOperandError,
                             [](Operands& operands) { return operands.number(0) == 0.0 ? 1.0 : 0.0; }, nullptr};

extern const Rules kIsErrorRules{
    Shape::One, Kind::Number, {kNothing, {kError, 0}, {kError, 0}, kNothing}, nullptr,
    [](Operands& operands) -> std::uint32_t { return operands.error(0) == ErrUnmaskable ? ErrUnmaskable : ErrNone; },
    [](Operands& operands) { return operands.error(0) != ErrNone ? 1.0 : 0.0; }, nullptr};

extern const Rules kIfRules{Shape::Condition,
                            Kind::Any,
                            {{kNumber, kType}, {kType | kError | kNumber, kError}, kNumbers, {kNumber, kText}},
                            &conditionalType,
                            &conditionalError,
                            &conditionalNumber,
                            &conditionalText};

}  // namespace cellformula

CNAnd::CNAnd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "and logic") {}
CNAnd::CNAnd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "and logic") {}
double CNAnd::f64Evaluate() const { return cellformula::numberAs(*this, Operation::And); }
Operation CNAnd::operation() const { return Operation::And; }

CNOr::CNOr(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "or logic") {}
CNOr::CNOr(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "or logic") {}
double CNOr::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Or); }
Operation CNOr::operation() const { return Operation::Or; }

CNMin::CNMin(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "min minimum") {}
CNMin::CNMin(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "min minimum") {}
double CNMin::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Min); }
Operation CNMin::operation() const { return Operation::Min; }

CNMax::CNMax(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "max maximum") {}
CNMax::CNMax(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "max maximum") {}
double CNMax::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Max); }
Operation CNMax::operation() const { return Operation::Max; }

CNNot::CNNot(ASTNode* operand) : CNSingleChildNode(operand, "not logical") {}
double CNNot::f64Evaluate() const { return cellformula::numberAs(*this, Operation::Not); }
Operation CNNot::operation() const { return Operation::Not; }

CNIsError::CNIsError(ASTNode* operand) : CNSingleChildNode(operand, "Evaluate Error State") {}
double CNIsError::f64Evaluate() const { return cellformula::numberAs(*this, Operation::IsError); }
std::uint32_t CNIsError::errType() { return cellformula::errorAs(*this, Operation::IsError); }
Operation CNIsError::operation() const { return Operation::IsError; }

CNIf::CNIf(ASTNode* condition, ASTNode* thenBranch, ASTNode* elseBranch)
    : poCondition(condition), poThen(thenBranch), poElse(elseBranch) {}
CNIf::~CNIf() {
    cellformula::deleteTree(poCondition);
    cellformula::deleteTree(poThen);
    cellformula::deleteTree(poElse);
}
double CNIf::f64Evaluate() const { return cellformula::numberAs(*this, Operation::If); }
void CNIf::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    cellformula::printOutline(*this, Operation::If, stream, depth);
}
std::uint32_t CNIf::exprType() { return cellformula::typeAs(*this, Operation::If); }
std::uint32_t CNIf::errType() { return cellformula::errorAs(*this, Operation::If); }
std::string CNIf::stringEvaluate() const { return cellformula::textAs(*this, Operation::If); }
Operation CNIf::operation() const { return Operation::If; }
