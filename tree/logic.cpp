#include "logic.h"

#include <cmath>
#include <stdexcept>
#include <utility>

using cellformula::EvaluationScope;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::textOf;
using cellformula::typeOf;

namespace {

// AND stops at the first false operand, OR at the first true one.
double connect(const CNManyChildrenNode& node, bool stopWhenTrue, EvaluationScope& scope) {
    const double decided = stopWhenTrue ? 1.0 : 0.0;
    const double undecided = 1.0 - decided;
    if (node.oChildren.empty()) {
        if ((numberOf(*node.poLeft, scope) != 0.0) == stopWhenTrue) return decided;
        return (numberOf(*node.poRight, scope) != 0.0) ? 1.0 : 0.0;
    }
    for (const ASTNode* child : node.oChildren) {
        if ((numberOf(*child, scope) != 0.0) == stopWhenTrue) return decided;
    }
    return undecided;
}

// fmin and fmax pass over a NaN when the other value is a number.
double reduce(const CNManyChildrenNode& node, double (*pick)(double, double), EvaluationScope& scope) {
    if (node.oChildren.empty()) {
        const double left = numberOf(*node.poLeft, scope);
        return pick(left, numberOf(*node.poRight, scope));
    }
    double result = numberOf(*node.oChildren.front(), scope);
    for (std::size_t i = 1; i < node.oChildren.size(); ++i) result = pick(result, numberOf(*node.oChildren[i], scope));
    return result;
}

double smaller(double a, double b) {
    return std::fmin(a, b);
}

double larger(double a, double b) {
    return std::fmax(a, b);
}

}  // namespace

#define CELLFORMULA_LIST_FUNCTION(Class, Label, Evaluation)                                           \
    Class::Class(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, Label) {}           \
    Class::Class(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, Label) {}      \
    double Class::f64Evaluate() const { return cellformula::evaluateNumber(*this); }                  \
    double Class::numberWithin(EvaluationScope& scope) const { return Evaluation; }

CELLFORMULA_LIST_FUNCTION(CNAnd, "and logic", connect(*this, false, scope))
CELLFORMULA_LIST_FUNCTION(CNOr, "or logic", connect(*this, true, scope))
CELLFORMULA_LIST_FUNCTION(CNMin, "min minimum", reduce(*this, smaller, scope))
CELLFORMULA_LIST_FUNCTION(CNMax, "max maximum", reduce(*this, larger, scope))

#undef CELLFORMULA_LIST_FUNCTION

// ---------------------------------------------------------------- CNNot, CNIsError

CNNot::CNNot(ASTNode* operand) : CNSingleChildNode(operand, "not logical") {}

double CNNot::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

double CNNot::numberWithin(EvaluationScope& scope) const {
    return numberOf(*poChild, scope) == 0.0 ? 1.0 : 0.0;
}

CNIsError::CNIsError(ASTNode* operand) : CNSingleChildNode(operand, "Evaluate Error State") {}

double CNIsError::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNIsError::errType() {
    return cellformula::evaluateError(*this);
}

// Every error is absorbed except the host's unmaskable one.
double CNIsError::numberWithin(EvaluationScope& scope) const {
    return errorOf(*poChild, scope) != ErrNone ? 1.0 : 0.0;
}

std::uint32_t CNIsError::errorWithin(EvaluationScope& scope) const {
    return errorOf(*poChild, scope) == ErrUnmaskable ? ErrUnmaskable : ErrNone;
}

// ---------------------------------------------------------------- CNIf

CNIf::CNIf(ASTNode* condition, ASTNode* thenBranch, ASTNode* elseBranch)
    : poCondition(condition), poThen(thenBranch), poElse(elseBranch) {}

CNIf::~CNIf() {
    if (poCondition == nullptr && poThen == nullptr && poElse == nullptr) return;
    std::vector<ASTNode*> pending;
    detachOperands(pending);
    deleteSubtrees(std::move(pending));
}

void CNIf::detachOperands(std::vector<ASTNode*>& pending) {
    // Reversed, so that the work list deletes condition, then, else.
    pending.push_back(std::exchange(poElse, nullptr));
    pending.push_back(std::exchange(poThen, nullptr));
    pending.push_back(std::exchange(poCondition, nullptr));
}

double CNIf::f64Evaluate() const {
    return cellformula::evaluateNumber(*this);
}

std::uint32_t CNIf::exprType() {
    return cellformula::evaluateType(*this);
}

std::uint32_t CNIf::errType() {
    return cellformula::evaluateError(*this);
}

std::string CNIf::stringEvaluate() const {
    return cellformula::evaluateText(*this);
}

const ASTNode* CNIf::chosenBranch(EvaluationScope& scope, bool& conditionTrue) const {
    // Every operation of one call makes the same choice; the condition is
    // evaluated once per call, however often the nodes above ask.
    double condition = 0.0;
    if (!scope.recall(this, condition)) {
        condition = numberOf(*poCondition, scope);
        scope.remember(this, condition);
    }
    conditionTrue = condition != 0.0;
    return conditionTrue ? poThen : poElse;
}

double CNIf::numberWithin(EvaluationScope& scope) const {
    if (poCondition == nullptr) return 0.0;
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(scope, conditionTrue);
    if (branch != nullptr) return numberOf(*branch, scope);
    return conditionTrue ? 1.0 : 0.0;
}

std::string CNIf::textWithin(EvaluationScope& scope) const {
    if (poCondition == nullptr) return std::string();
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(scope, conditionTrue);
    return branch != nullptr ? textOf(*branch, scope) : std::string();
}

std::uint32_t CNIf::typeWithin(EvaluationScope& scope) const {
    if (poCondition == nullptr) return ExprNoType;
    // A condition whose value cannot be computed (an invalid BIN2DEC, a
    // negative RIGHT) leaves no usable type; classifying never throws.
    bool conditionTrue = false;
    const ASTNode* branch = nullptr;
    try {
        branch = chosenBranch(scope, conditionTrue);
    } catch (const std::invalid_argument&) {
        return ExprNoType;
    } catch (const std::out_of_range&) {
        return ExprNoType;
    }
    return branch != nullptr ? typeOf(*branch, scope) : ExprNoType;
}

std::uint32_t CNIf::errorWithin(EvaluationScope& scope) const {
    if (poCondition == nullptr) return ErrWrongType;
    const std::uint32_t conditionError = errorOf(*poCondition, scope);
    if (conditionError != ErrNone) return conditionError;
    if (typeOf(*poCondition, scope) != ExprNumber) return ErrWrongType;
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(scope, conditionTrue);
    return branch != nullptr ? errorOf(*branch, scope) : ErrWrongType;
}

void CNIf::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    writeIndent(stream, depth);
    stream << "IF condition" << std::endl;
    poCondition->vPrintNode(stream, depth + 1);
    if (poThen != nullptr) poThen->vPrintNode(stream, depth + 1);
    if (poElse != nullptr) poElse->vPrintNode(stream, depth + 1);
}
