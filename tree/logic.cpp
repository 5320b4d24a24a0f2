#include "logic.h"

#include <cmath>
#include <stdexcept>
#include <utility>

using cellformula::Evaluation;
using cellformula::errorOf;
using cellformula::numberOf;
using cellformula::rememberedNumberOf;
using cellformula::typeOf;

namespace {

// AND stops at the first false operand, OR at the first true one.
double connect(const CNManyChildrenNode& node, bool stopWhenTrue, Evaluation& evaluation) {
    const double decided = stopWhenTrue ? 1.0 : 0.0;
    const double undecided = 1.0 - decided;
    if (node.oChildren.empty()) {
        if ((numberOf(*node.poLeft, evaluation) != 0.0) == stopWhenTrue) return decided;
        return (numberOf(*node.poRight, evaluation) != 0.0) ? 1.0 : 0.0;
    }
    for (const ASTNode* child : node.oChildren) {
        if ((numberOf(*child, evaluation) != 0.0) == stopWhenTrue) return decided;
    }
    return undecided;
}

// fmin and fmax pass over a NaN when the other value is a number.
double reduce(const CNManyChildrenNode& node, double (*pick)(double, double), Evaluation& evaluation) {
    if (node.oChildren.empty()) {
        const double left = numberOf(*node.poLeft, evaluation);
        return pick(left, numberOf(*node.poRight, evaluation));
    }
    double result = numberOf(*node.oChildren.front(), evaluation);
    for (std::size_t i = 1; i < node.oChildren.size(); ++i) result = pick(result, numberOf(*node.oChildren[i], evaluation));
    return result;
}

double smaller(double a, double b) {
    return std::fmin(a, b);
}

double larger(double a, double b) {
    return std::fmax(a, b);
}

}  // namespace

CNAnd::CNAnd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "and logic") {}

CNAnd::CNAnd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "and logic") {}

double CNAnd::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAnd::numberWithin(Evaluation& evaluation) const {
    return connect(*this, false, evaluation);
}

CNOr::CNOr(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "or logic") {}

CNOr::CNOr(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "or logic") {}

double CNOr::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNOr::numberWithin(Evaluation& evaluation) const {
    return connect(*this, true, evaluation);
}

CNMin::CNMin(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "min minimum") {}

CNMin::CNMin(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "min minimum") {}

double CNMin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMin::numberWithin(Evaluation& evaluation) const {
    return reduce(*this, smaller, evaluation);
}

CNMax::CNMax(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "max maximum") {}

CNMax::CNMax(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "max maximum") {}

double CNMax::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMax::numberWithin(Evaluation& evaluation) const {
    return reduce(*this, larger, evaluation);
}


// ---------------------------------------------------------------- CNNot, CNIsError

CNNot::CNNot(ASTNode* operand) : CNSingleChildNode(operand, "not logical") {}

double CNNot::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNNot::numberWithin(Evaluation& evaluation) const {
    return numberOf(*poChild, evaluation) == 0.0 ? 1.0 : 0.0;
}

CNIsError::CNIsError(ASTNode* operand) : CNSingleChildNode(operand, "Evaluate Error State") {}

double CNIsError::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}


// Every error is absorbed except the host's unmaskable one.
double CNIsError::numberWithin(Evaluation& evaluation) const {
    return errorOf(*poChild, evaluation) != ErrNone ? 1.0 : 0.0;
}

std::uint32_t CNIsError::errorWithin(Evaluation& evaluation) const {
    return errorOf(*poChild, evaluation) == ErrUnmaskable ? ErrUnmaskable : ErrNone;
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

void CNIf::listOperands(std::vector<const ASTNode*>& operands) const {
    for (const ASTNode* operand : {poCondition, poThen, poElse}) {
        if (operand != nullptr) operands.push_back(operand);
    }
}

double CNIf::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

const ASTNode* CNIf::chosenBranch(Evaluation& evaluation, bool& conditionTrue) const {
    // Every operation of one call makes the same choice; the condition is
    // evaluated once per call, however often the nodes above ask.
    const double condition = rememberedNumberOf(*poCondition, evaluation);
    conditionTrue = condition != 0.0;
    return conditionTrue ? poThen : poElse;
}

double CNIf::numberWithin(Evaluation& evaluation) const {
    if (poCondition == nullptr) return 0.0;
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(evaluation, conditionTrue);
    if (branch != nullptr) return numberOf(*branch, evaluation);
    return conditionTrue ? 1.0 : 0.0;
}

// The text is the chosen branch's, or empty without one.
bool CNIf::isConcatenation(Evaluation& evaluation, std::vector<const ASTNode*>& parts) const {
    if (poCondition == nullptr) return true;
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(evaluation, conditionTrue);
    if (branch != nullptr) parts.push_back(branch);
    return true;
}

void CNIf::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    cellformula::appendConcatenation(*this, evaluation, text);
}

std::uint32_t CNIf::typeWithin(Evaluation& evaluation) const {
    if (poCondition == nullptr) return ExprNoType;
    // A condition whose value cannot be computed (an invalid BIN2DEC, a
    // negative RIGHT) leaves no usable type; classifying never throws.
    bool conditionTrue = false;
    const ASTNode* branch = nullptr;
    try {
        branch = chosenBranch(evaluation, conditionTrue);
    } catch (const std::invalid_argument&) {
        return ExprNoType;
    } catch (const std::out_of_range&) {
        return ExprNoType;
    }
    return branch != nullptr ? typeOf(*branch, evaluation) : ExprNoType;
}

std::uint32_t CNIf::errorWithin(Evaluation& evaluation) const {
    if (poCondition == nullptr) return ErrWrongType;
    const std::uint32_t conditionError = errorOf(*poCondition, evaluation);
    if (conditionError != ErrNone) return conditionError;
    if (typeOf(*poCondition, evaluation) != ExprNumber) return ErrWrongType;
    bool conditionTrue = false;
    const ASTNode* branch = chosenBranch(evaluation, conditionTrue);
    return branch != nullptr ? errorOf(*branch, evaluation) : ErrWrongType;
}

void CNIf::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNIf::writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                            bool) const {
    writeIndent(stream, depth);
    stream << "IF condition" << std::endl;
    // Queued last to first: condition, then the branches that are present.
    if (poElse != nullptr) queue.emplace_back(poElse, depth + 1);
    if (poThen != nullptr) queue.emplace_back(poThen, depth + 1);
    queue.emplace_back(poCondition, depth + 1);
    return true;
}
