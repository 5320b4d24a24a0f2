#include "logic.h"

#include <stdexcept>
#include <utility>

#include "logicrules.h"
#include "operands.h"

using cellformula::Evaluation;
using cellformula::StackOperands;
using cellformula::StackRules;
using cellformula::typeOf;

using cellformula::rules::anyError;
using cellformula::rules::choice;
using cellformula::rules::choiceError;
using cellformula::rules::connect;
using cellformula::rules::larger;
using cellformula::rules::negation;
using cellformula::rules::reduce;
using cellformula::rules::smaller;
using cellformula::rules::unmaskedError;

namespace {

constexpr StackRules kAndRules{cellformula::operandRules<CNAnd,
    &connect<false, const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kOrRules{cellformula::operandRules<CNOr,
    &connect<true, const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kMinRules{cellformula::operandRules<CNMin,
    &reduce<smaller, const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kMaxRules{cellformula::operandRules<CNMax,
    &reduce<larger, const StackOperands>,
    &cellformula::operandsError<cellformula::isNotNumber, const StackOperands>>()};
constexpr StackRules kNotRules{cellformula::operandRules<CNNot,
    &negation<const StackOperands>,
    &cellformula::oneOperandError<const StackOperands>>()};
constexpr StackRules kIsErrorRules{cellformula::operandRules<CNIsError,
    &anyError<const StackOperands>,
    &unmaskedError<const StackOperands>>()};
// IF walks its condition and then only the branch the condition picks, as its
// own rules ask them: the other branch may hold anything.
cellformula::WalkedAnswer walkChoice(const ASTNode& node, Evaluation& evaluation) {
    if (!cellformula::isExactly<CNIf>(node)) return cellformula::WalkedAnswer{};
    const CNIf& choiceNode = static_cast<const CNIf&>(node);
    const ASTNode* const operands[3] = {choiceNode.poCondition, choiceNode.poThen, choiceNode.poElse};
    double numbers[3] = {};
    std::uint32_t errors[3] = {};
    const StackOperands answers(numbers, errors, 3, false);
    const cellformula::WalkedAnswer condition = cellformula::walkOperand(operands[0], evaluation);
    if (!condition.walked()) return cellformula::WalkedAnswer{};
    numbers[0] = condition.number;
    errors[0] = condition.code();
    bool conditionTrue = false;
    const std::size_t branch = cellformula::rules::chosenBranch(answers, conditionTrue);
    const cellformula::WalkedAnswer chosen = cellformula::walkOperand(operands[branch], evaluation);
    if (!chosen.walked()) return cellformula::WalkedAnswer{};
    numbers[branch] = chosen.number;
    errors[branch] = chosen.code();
    return cellformula::walkedAnswer<&choice<const StackOperands>, &choiceError<const StackOperands>>(answers);
}

constexpr StackRules kIfRules{&typeid(CNIf), &cellformula::numberOnStack<&choice<const StackOperands>>,
                              &cellformula::errorOnStack<&choiceError<const StackOperands>>, nullptr, &walkChoice};

}  // namespace

CNAnd::CNAnd(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "and logic") {}

CNAnd::CNAnd(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "and logic") {}

double CNAnd::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNAnd::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return connect<false>(operands); });
}

const StackRules* CNAnd::stackRules() const {
    return &kAndRules;
}

cellformula::WalkedAnswer CNAnd::walkWithin(cellformula::Evaluation& evaluation) const {
    return kAndRules.walk(*this, evaluation);
}

CNOr::CNOr(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "or logic") {}

CNOr::CNOr(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "or logic") {}

double CNOr::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNOr::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return connect<true>(operands); });
}

const StackRules* CNOr::stackRules() const {
    return &kOrRules;
}

cellformula::WalkedAnswer CNOr::walkWithin(cellformula::Evaluation& evaluation) const {
    return kOrRules.walk(*this, evaluation);
}

CNMin::CNMin(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "min minimum") {}

CNMin::CNMin(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "min minimum") {}

double CNMin::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMin::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return reduce<smaller>(operands); });
}

const StackRules* CNMin::stackRules() const {
    return &kMinRules;
}

cellformula::WalkedAnswer CNMin::walkWithin(cellformula::Evaluation& evaluation) const {
    return kMinRules.walk(*this, evaluation);
}

CNMax::CNMax(ASTNode* left, ASTNode* right) : CNManyChildrenNode(left, right, "max maximum") {}

CNMax::CNMax(const std::vector<ASTNode*>& children) : CNManyChildrenNode(children, "max maximum") {}

double CNMax::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNMax::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return reduce<larger>(operands); });
}

const StackRules* CNMax::stackRules() const {
    return &kMaxRules;
}

cellformula::WalkedAnswer CNMax::walkWithin(cellformula::Evaluation& evaluation) const {
    return kMaxRules.walk(*this, evaluation);
}

// ---------------------------------------------------------------- CNNot, CNIsError

CNNot::CNNot(ASTNode* operand) : CNSingleChildNode(operand, "not logical") {}

double CNNot::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNNot::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return negation(operands); });
}

const StackRules* CNNot::stackRules() const {
    return &kNotRules;
}

cellformula::WalkedAnswer CNNot::walkWithin(cellformula::Evaluation& evaluation) const {
    return kNotRules.walk(*this, evaluation);
}

CNIsError::CNIsError(ASTNode* operand) : CNSingleChildNode(operand, "Evaluate Error State") {}

double CNIsError::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNIsError::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return anyError(operands); });
}

std::uint32_t CNIsError::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return cellformula::applyToOperands(*this, evaluation, [](auto& operands) { return unmaskedError(operands); });
}

const StackRules* CNIsError::stackRules() const {
    return &kIsErrorRules;
}

cellformula::WalkedAnswer CNIsError::walkWithin(cellformula::Evaluation& evaluation) const {
    return kIsErrorRules.walk(*this, evaluation);
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

cellformula::TreeOperands CNIf::operands(Evaluation& evaluation) const {
    return cellformula::TreeOperands(evaluation, {poCondition, poThen, poElse});
}

const ASTNode* CNIf::chosenBranch(Evaluation& evaluation, bool& conditionTrue) const {
    auto ifOperands = operands(evaluation);
    switch (cellformula::rules::chosenBranch(ifOperands, conditionTrue)) {
        case 1: return poThen;
        case 2: return poElse;
        default: return nullptr;
    }
}

double CNIf::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    auto ifOperands = operands(evaluation);
    return choice(ifOperands);
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
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    cellformula::appendConcatenation(*this, evaluation, text);
}

std::uint32_t CNIf::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
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
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    auto ifOperands = operands(evaluation);
    return choiceError(ifOperands);
}

const StackRules* CNIf::stackRules() const {
    return &kIfRules;
}

cellformula::WalkedAnswer CNIf::walkWithin(cellformula::Evaluation& evaluation) const {
    return kIfRules.walk(*this, evaluation);
}

void CNIf::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNIf::writeOutlineLine(std::stringstream& stream, unsigned int depth, cellformula::OutlineQueue& queue,
                            bool entry) const {
    if (!entry && !cellformula::isExactly<CNIf>(*this)) return false;
    writeIndent(stream, depth);
    stream << "IF condition" << std::endl;
    // Queued last to first: condition, then the branches that are present.
    if (poElse != nullptr) queue.emplace_back(poElse, depth + 1);
    if (poThen != nullptr) queue.emplace_back(poThen, depth + 1);
    queue.emplace_back(poCondition, depth + 1);
    return true;
}
