#include "astnode.h"

#include "operands.h"

#include <utility>

using cellformula::Evaluation;
using cellformula::OutlineQueue;
using cellformula::errorOf;
using cellformula::answersByRules;
using cellformula::isLibraryNode;
using cellformula::typeOf;

// ---------------------------------------------------------------- ASTNode

ASTNode::~ASTNode() = default;

std::uint32_t ASTNode::exprType() {
    return cellformula::typeOfEntry(*this);
}

std::uint32_t ASTNode::errType() {
    return cellformula::errorOfEntry(*this);
}

std::string ASTNode::stringEvaluate() const {
    return cellformula::textOfEntry(*this);
}

// A node asked by its own public operation answers by the defaults (a number,
// no error, its value as text); asked as an operand, it answers through its
// public operations, which a host's class may override.
double ASTNode::numberWithin(Evaluation&) const {
    return f64Evaluate();
}

void ASTNode::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (evaluation.isEntry(this)) {
        text += QuandelUtils::sstringify(f64Evaluate());
        return;
    }
    text += stringEvaluate();
}

std::uint32_t ASTNode::typeWithin(Evaluation& evaluation) const {
    if (evaluation.isEntry(this)) return ExprNumber;
    return const_cast<ASTNode&>(*this).exprType();
}

std::uint32_t ASTNode::errorWithin(Evaluation& evaluation) const {
    if (evaluation.isEntry(this)) return ErrNone;
    return const_cast<ASTNode&>(*this).errType();
}

void ASTNode::detachOperands(std::vector<ASTNode*>&) {}

void ASTNode::listOperands(std::vector<const ASTNode*>&) const {}

const cellformula::StackRules* ASTNode::stackRules() const {
    return nullptr;
}

cellformula::WalkedAnswer ASTNode::walkWithin(cellformula::Evaluation&) const {
    return cellformula::WalkedAnswer{};
}

bool ASTNode::isConcatenation(Evaluation&, std::vector<const ASTNode*>&) const {
    return false;
}

bool ASTNode::writeOutlineLine(std::stringstream&, unsigned int, OutlineQueue&, bool) const {
    return false;
}

void ASTNode::deleteSubtrees(std::vector<ASTNode*> pending) {
    // Room for a typical formula's whole tree up front, rather than growing
    // the list a step at a time.
    constexpr std::size_t kTypicalNodes = 64;
    pending.reserve(kTypicalNodes);
    while (!pending.empty()) {
        ASTNode* node = pending.back();
        pending.pop_back();
        if (node == nullptr) continue;
        node->detachOperands(pending);
        delete node;
    }
}

void ASTNode::printOutline(std::stringstream& stream, unsigned int depth) const {
    OutlineQueue queue;
    if (!writeOutlineLine(stream, depth, queue, true)) return;
    while (!queue.empty()) {
        const auto [node, nodeDepth] = queue.back();
        queue.pop_back();
        if (!node->writeOutlineLine(stream, nodeDepth, queue, false)) node->vPrintNode(stream, nodeDepth);
    }
}

void ASTNode::writeIndent(std::stringstream& stream, unsigned int depth) {
    // Written in runs rather than two blanks at a time: deep outlines are
    // mostly indentation.
    static constexpr char kBlanks[] = "                                                                ";
    constexpr std::size_t kRun = sizeof kBlanks - 1;
    std::size_t remaining = 2 * static_cast<std::size_t>(depth);
    while (remaining > 0) {
        const std::size_t run = remaining < kRun ? remaining : kRun;
        stream.write(kBlanks, static_cast<std::streamsize>(run));
        remaining -= run;
    }
}

namespace cellformula {

double numberOfElsewhere(const ASTNode& node, Evaluation& evaluation) {
    switch (evaluation.memory()) {
        case Evaluation::Memory::ConditionsOnly: break;
        case Evaluation::Memory::Everything: return rememberedNumberOf(node, evaluation);
        case Evaluation::Memory::Deferred: return evaluation.deferred().number(node);
    }
    return evaluation.withStack([&] { return node.numberWithin(evaluation); });
}

double rememberedNumberOf(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.memory() == Evaluation::Memory::Deferred) return evaluation.deferred().number(node);
    if (const double* known = evaluation.numbers().find(&node)) return *known;
    const double number = evaluation.withStack([&] { return node.numberWithin(evaluation); });
    evaluation.numbers().keep(&node, number);
    return number;
}

void appendTextOfElsewhere(const ASTNode& node, Evaluation& evaluation, std::string& text) {
    if (evaluation.memory() == Evaluation::Memory::Deferred) {
        evaluation.deferred().appendText(node, text);
        return;
    }
    if (evaluation.remembersEverything()) {
        if (const std::string* known = evaluation.rememberedText(&node)) {
            text += *known;
            return;
        }
    }
    evaluation.withStack([&] { node.appendTextWithin(evaluation, text); });
}

std::string textOf(const ASTNode& node, Evaluation& evaluation) {
    std::string text;
    if (evaluation.memory() == Evaluation::Memory::Deferred) {
        evaluation.deferred().appendText(node, text);
        return text;
    }
    if (evaluation.remembersEverything()) {
        if (const std::string* known = evaluation.rememberedText(&node)) return *known;
    }
    evaluation.withStack([&] { node.appendTextWithin(evaluation, text); });
    if (evaluation.remembersEverything()) evaluation.rememberText(&node, text);
    return text;
}

std::uint32_t typeOfElsewhere(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.memory() == Evaluation::Memory::Deferred) return evaluation.deferred().type(node);
    return evaluation.withStack([&] { return node.typeWithin(evaluation); });
}

std::uint32_t errorOfElsewhere(const ASTNode& node, Evaluation& evaluation) {
    if (evaluation.memory() == Evaluation::Memory::Deferred) return evaluation.deferred().error(node);
    return evaluation.withStack([&] { return node.errorWithin(evaluation); });
}

WalkedAnswer walkAnswersElsewhere(const ASTNode& node, Evaluation& evaluation) {
    return evaluation.withStack([&] { return node.walkWithin(evaluation); });
}

std::string textOfEntry(const ASTNode& node) {
    Evaluation evaluation(&node, Evaluation::Memory::ConditionsOnly);
    std::string text;
    node.appendTextWithin(evaluation, text);
    return text;
}

std::uint32_t typeOfEntry(const ASTNode& node) {
    Evaluation evaluation(&node, Evaluation::Memory::ConditionsOnly);
    return node.typeWithin(evaluation);
}

// Error rules ask again for values their operands' rules computed, so this
// call keeps every value and text it computes.
std::uint32_t errorOfEntry(const ASTNode& node) {
    // A tree of numbers gives its error from one walk, each node's rules asked once.
    {
        Evaluation walking(&node, Evaluation::Memory::ConditionsOnly);
        const WalkedAnswer answer = node.walkWithin(walking);
        if (answer.walked()) return answer.code();
    }
    Evaluation evaluation(&node, Evaluation::Memory::Everything);
    return node.errorWithin(evaluation);
}

}  // namespace cellformula

// ---------------------------------------------------------------- leaves

namespace {

constexpr double kPi = 3.141592653589793;

const double* constantSource(const ASTNode& node) {
    return &static_cast<const CNConstant&>(node).f64Value;
}

double constantValue(const ASTNode& node, const cellformula::StackOperands&) {
    return *constantSource(node);
}

const double* piSource(const ASTNode&) {
    return &kPi;
}

double piValue(const ASTNode& node, const cellformula::StackOperands&) {
    return *piSource(node);
}

std::uint32_t noError(const ASTNode&, const cellformula::StackOperands&) {
    return ErrNone;
}

constexpr cellformula::StackRules kConstantRules{
    cellformula::leafRules<CNConstant, &constantSource, &constantValue, &noError>()};
constexpr cellformula::StackRules kPiRules{cellformula::leafRules<CNPi, &piSource, &piValue, &noError>()};

}  // namespace

CNConstant::CNConstant(double value) : f64Value(value) {}

double CNConstant::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNConstant::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return *constantSource(*this);
}

std::uint32_t CNConstant::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprNumber;
}

std::uint32_t CNConstant::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return ErrNone;
}

const cellformula::StackRules* CNConstant::stackRules() const {
    return &kConstantRules;
}

cellformula::WalkedAnswer CNConstant::walkWithin(cellformula::Evaluation& evaluation) const {
    return kConstantRules.walk(*this, evaluation);
}

void CNConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNConstant::writeOutlineLine(std::stringstream& stream, unsigned int depth, OutlineQueue&, bool entry) const {
    if (!entry && !cellformula::isExactly<CNConstant>(*this)) return false;
    writeIndent(stream, depth);
    stream << f64Value << std::endl;
    return true;
}

CNStringConstant::CNStringConstant(const std::string& text) : oValue(text) {}

double CNStringConstant::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNStringConstant::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return 0.0;
}

std::uint32_t CNStringConstant::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprString;
}

std::uint32_t CNStringConstant::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return ErrNone;
}

void CNStringConstant::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNStringConstant::writeOutlineLine(std::stringstream& stream, unsigned int depth, OutlineQueue&,
                                        bool entry) const {
    if (!entry && !cellformula::isExactly<CNStringConstant>(*this)) return false;
    writeIndent(stream, depth);
    stream << oValue << std::endl;
    return true;
}

void CNStringConstant::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::appendTextWithin(evaluation, text);
    text += oValue;
}

double CNPi::f64Evaluate() const {
    return cellformula::numberOfEntry(*this);
}

double CNPi::numberWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::numberWithin(evaluation);
    return *piSource(*this);
}

std::uint32_t CNPi::typeWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::typeWithin(evaluation);
    return ExprNumber;
}

std::uint32_t CNPi::errorWithin(Evaluation& evaluation) const {
    if (!cellformula::rulesApply(*this, evaluation)) return ASTNode::errorWithin(evaluation);
    return ErrNone;
}

const cellformula::StackRules* CNPi::stackRules() const {
    return &kPiRules;
}

cellformula::WalkedAnswer CNPi::walkWithin(cellformula::Evaluation& evaluation) const {
    return kPiRules.walk(*this, evaluation);
}

void CNPi::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNPi::writeOutlineLine(std::stringstream& stream, unsigned int depth, OutlineQueue&, bool entry) const {
    if (!entry && !cellformula::isExactly<CNPi>(*this)) return false;
    writeIndent(stream, depth);
    stream << kPi << std::endl;
    return true;
}

// ---------------------------------------------------------------- one operand

// The base's rules apply to the library's own classes and to the node whose
// own public operation asked; any other subclass is a host's and is asked
// through its public operations.

CNSingleChildNode::CNSingleChildNode(ASTNode* child, const std::string& name)
    : poChild(child), oName(name) {}

CNSingleChildNode::~CNSingleChildNode() {
    if (poChild != nullptr) deleteSubtrees({std::exchange(poChild, nullptr)});
}

void CNSingleChildNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNSingleChildNode::writeOutlineLine(std::stringstream& stream, unsigned int depth, OutlineQueue& queue,
                                         bool entry) const {
    if (!entry && !isLibraryNode(*this)) return false;
    writeIndent(stream, depth);
    stream << oName << std::endl;
    queue.emplace_back(poChild, depth + 1);
    return true;
}

void CNSingleChildNode::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!answersByRules(*this, evaluation)) {
        text += stringEvaluate();
        return;
    }
    text += QuandelUtils::sstringify(numberWithin(evaluation));
}

std::uint32_t CNSingleChildNode::typeWithin(Evaluation& evaluation) const {
    if (!answersByRules(*this, evaluation)) return const_cast<CNSingleChildNode&>(*this).exprType();
    return ExprNumber;
}

std::uint32_t CNSingleChildNode::errorWithin(Evaluation& evaluation) const {
    if (!answersByRules(*this, evaluation)) return const_cast<CNSingleChildNode&>(*this).errType();
    return cellformula::applyToOperands(*this, evaluation,
                                        [](auto& operands) { return cellformula::oneOperandError(operands); });
}

void CNSingleChildNode::listOperands(std::vector<const ASTNode*>& operands) const {
    if (isLibraryNode(*this)) operands.push_back(poChild);
}

void CNSingleChildNode::detachOperands(std::vector<ASTNode*>& pending) {
    pending.push_back(std::exchange(poChild, nullptr));
}

// ---------------------------------------------------------------- two or more operands

CNManyChildrenNode::CNManyChildrenNode(ASTNode* left, ASTNode* right, const std::string& name)
    : poLeft(left), poRight(right), oName(name) {}

CNManyChildrenNode::CNManyChildrenNode(const std::vector<ASTNode*>& children, const std::string& name)
    : oChildren(children), poLeft(nullptr), poRight(nullptr), oName(name) {}

CNManyChildrenNode::~CNManyChildrenNode() {
    // Nodes freed through the work list arrive already emptied.
    if (poLeft == nullptr && poRight == nullptr && oChildren.empty()) return;
    std::vector<ASTNode*> pending;
    detachOperands(pending);
    deleteSubtrees(std::move(pending));
}

void CNManyChildrenNode::vPrintNode(std::stringstream& stream, unsigned int depth) const {
    printOutline(stream, depth);
}

bool CNManyChildrenNode::writeOutlineLine(std::stringstream& stream, unsigned int depth, OutlineQueue& queue,
                                          bool entry) const {
    if (!entry && !isLibraryNode(*this)) return false;
    writeIndent(stream, depth);
    stream << oName << std::endl;
    // Queued last to first, so that the first operand prints first.
    if (isPairForm()) {
        queue.emplace_back(poRight, depth + 1);
        queue.emplace_back(poLeft, depth + 1);
        return true;
    }
    for (auto child = oChildren.rbegin(); child != oChildren.rend(); ++child) queue.emplace_back(*child, depth + 1);
    return true;
}

void CNManyChildrenNode::appendTextWithin(Evaluation& evaluation, std::string& text) const {
    if (!answersByRules(*this, evaluation)) {
        text += stringEvaluate();
        return;
    }
    text += QuandelUtils::sstringify(numberWithin(evaluation));
}

std::uint32_t CNManyChildrenNode::typeWithin(Evaluation& evaluation) const {
    if (!answersByRules(*this, evaluation)) return const_cast<CNManyChildrenNode&>(*this).exprType();
    return ExprNumber;
}

std::uint32_t CNManyChildrenNode::errorWithin(Evaluation& evaluation) const {
    if (!answersByRules(*this, evaluation)) return const_cast<CNManyChildrenNode&>(*this).errType();
    return cellformula::applyToOperands(*this, evaluation,
        [](auto& operands) { return cellformula::operandsError<cellformula::isNotNumber>(operands); });
}

void CNManyChildrenNode::listOperands(std::vector<const ASTNode*>& operands) const {
    if (!isLibraryNode(*this)) return;
    if (!isPairForm()) {
        operands.insert(operands.end(), oChildren.begin(), oChildren.end());
        return;
    }
    if (poLeft != nullptr) operands.push_back(poLeft);
    if (poRight != nullptr) operands.push_back(poRight);
}

void CNManyChildrenNode::detachOperands(std::vector<ASTNode*>& pending) {
    // The right operand comes off the work list first: in the usual long
    // formula, a sum nested to the left, it is a leaf, so the list stays
    // short instead of holding every right operand until the end.
    pending.insert(pending.end(), oChildren.begin(), oChildren.end());
    oChildren.clear();
    pending.push_back(std::exchange(poLeft, nullptr));
    pending.push_back(std::exchange(poRight, nullptr));
}
