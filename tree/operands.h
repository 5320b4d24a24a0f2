#ifndef CELLFORMULA_OPERANDS_H
#define CELLFORMULA_OPERANDS_H

// The two ways a node's rules reach its operands: asked one question at a
// time in a tree (TreeOperands), or read from the answers a compiled program
// has already computed (StackOperands). Each rule is written once, as a
// template over either, so a tree and its compiled program cannot disagree.
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "astnode.h"
#include "variablerules.h"

namespace cellformula {

// The value of an operand that is the library's own number literal, which
// its parent reads in place; null for any other node.
inline const double* plainConstant(const ASTNode& node) {
    if (!isExactly<CNConstant>(node)) return nullptr;
    return &static_cast<const CNConstant&>(node).f64Value;
}

// A node's operands asked within a tree. Operands held in the node's own
// fields (one, or a pair) are a type of their own (MayBeList false), so that
// a rule compiled for them tests nothing about the form when it asks one.
template <bool MayBeList>
class BasicTreeOperands {
public:
    // A node's operands in the order its rules number them: the one operand,
    // the pair, the list, or condition, then- and else-branch.
    BasicTreeOperands(Evaluation& evaluation, std::initializer_list<const ASTNode*> few)
        : evaluation_(evaluation), few_{}, count_(few.size()) {
        std::size_t i = 0;
        for (const ASTNode* node : few) few_[i++] = node;
    }
    BasicTreeOperands(Evaluation& evaluation, const std::vector<ASTNode*>& list)
        : evaluation_(evaluation), few_{}, list_(list.data()), count_(list.size()) {
        static_assert(MayBeList, "a list needs operands that may be a list");
    }

    std::size_t count() const { return count_; }
    bool isList() const { return MayBeList && list_ != nullptr; }
    bool present(std::size_t i) const { return node(i) != nullptr; }
    // A cell, the commonest operand, and a number literal are read in place
    // rather than through a virtual call (their answers need no stack and
    // are as cheap to read again as to remember).
    [[gnu::always_inline]] double number(std::size_t i) {
        const ASTNode& operand = *node(i);
        if (const VariableRecord* cell = rules::plainRecord(operand)) return rules::recordNumber(*cell);
        if (const double* value = plainConstant(operand)) return *value;
        if (evaluation_.asksPlainly()) return operand.numberWithin(evaluation_);
        return numberOfElsewhere(operand, evaluation_);
    }
    // A value every question about the node depends on, worked out once per call.
    double condition(std::size_t i) { return rememberedNumberOf(*node(i), evaluation_); }
    std::string text(std::size_t i) { return textOf(*node(i), evaluation_); }
    [[gnu::always_inline]] std::uint32_t type(std::size_t i) {
        const ASTNode& operand = *node(i);
        if (const VariableRecord* cell = rules::plainRecord(operand)) return rules::recordType(*cell);
        if (evaluation_.asksDirectly()) return operand.typeWithin(evaluation_);
        return typeOfElsewhere(operand, evaluation_);
    }
    [[gnu::always_inline]] std::uint32_t error(std::size_t i) {
        const ASTNode& operand = *node(i);
        if (const VariableRecord* cell = rules::plainRecord(operand)) return rules::recordError(*cell);
        if (evaluation_.asksDirectly()) return operand.errorWithin(evaluation_);
        return errorOfElsewhere(operand, evaluation_);
    }

private:
    // Kept by value for the few, so that a rule's operands stay in registers.
    const ASTNode* node(std::size_t i) const { return isList() ? list_[i] : few_[i]; }

    Evaluation& evaluation_;
    const ASTNode* few_[3];
    const ASTNode* const* list_ = nullptr;
    std::size_t count_;
};

// The operands of a node that holds them in its own fields, never a list.
using TreePair = BasicTreeOperands<false>;

// Operands whose numbers (and, where asked, errors) a compiled program has
// computed; all of them are numbers, which is what lets the program compile
// a node this way.
class StackOperands {
public:
    StackOperands(const double* numbers, const std::uint32_t* errors, std::size_t count, bool list)
        : numbers_(numbers), errors_(errors), count_(count), list_(list) {}

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) const { return numbers_[i]; }
    double condition(std::size_t i) const { return numbers_[i]; }
    std::string text(std::size_t) const { return std::string(); }
    std::uint32_t type(std::size_t) const { return ExprNumber; }
    std::uint32_t error(std::size_t i) const { return errors_[i]; }

private:
    const double* numbers_;
    const std::uint32_t* errors_;
    std::size_t count_;
    bool list_;
};

// A node's number and error rules for a compiled program's stack, and the
// class they belong to: a host's subclass of that class is not compiled so.
struct StackRules {
    const std::type_info* owner;
    double (*number)(const ASTNode& node, const StackOperands& operands);
    std::uint32_t (*error)(const ASTNode& node, const StackOperands& operands);
    // For a leaf, where its number is read from at every evaluation (its own
    // field, or the host's storage); a program loads it from there directly.
    const double* (*source)(const ASTNode& node) = nullptr;
    // Number and error of the node in one walk over the tree itself, each
    // operand answered the same way first.
    WalkedAnswer (*walk)(const ASTNode& node, Evaluation& evaluation) = nullptr;
};

// The operands of the three shapes of node, in the order their rules number them.
template <class Node>
std::size_t operandsOnStack(const ASTNode& node, const ASTNode* few[3], const ASTNode* const*& list) {
    const Node& typed = static_cast<const Node&>(node);
    if constexpr (std::is_base_of_v<CNSingleChildNode, Node>) {
        few[0] = typed.poChild;
        return 1;
    } else if constexpr (std::is_base_of_v<CNManyChildrenNode, Node>) {
        if (!typed.oChildren.empty()) {
            list = typed.oChildren.data();
            return typed.oChildren.size();
        }
        few[0] = typed.poLeft;
        few[1] = typed.poRight;
        return 2;
    } else {
        few[0] = typed.poCondition;
        few[1] = typed.poThen;
        few[2] = typed.poElse;
        return 3;
    }
}

template <double (*rule)(const StackOperands&)>
double numberOnStack(const ASTNode&, const StackOperands& operands) {
    return rule(operands);
}

template <std::uint32_t (*rule)(const StackOperands&)>
std::uint32_t errorOnStack(const ASTNode&, const StackOperands& operands) {
    return rule(operands);
}

// One operand's number and error by the walk, on a fresh stack segment
// when this one is spent; kept out of line so that the common case spills
// nothing for it.
WalkedAnswer walkAnswersElsewhere(const ASTNode& node, Evaluation& evaluation);

// A cell or a number literal is read in place, as a tree's rules read it.
[[gnu::always_inline]] inline WalkedAnswer walkOperand(const ASTNode* operand, Evaluation& evaluation) {
    if (operand == nullptr) return WalkedAnswer{};
    if (const VariableRecord* cell = rules::plainRecord(*operand)) {
        if (!rules::recordIsNumber(*cell)) return WalkedAnswer{};
        return WalkedAnswer{rules::recordNumber(*cell), rules::recordError(*cell)};
    }
    // A number literal never has an error.
    if (const double* value = plainConstant(*operand)) return WalkedAnswer{*value, ErrNone};
    if (evaluation.stackRunsLow()) return walkAnswersElsewhere(*operand, evaluation);
    return operand->walkWithin(evaluation);
}

// Answers one operand into its place; false when it cannot be answered so.
[[gnu::always_inline]] inline bool walkInto(const ASTNode* operand, Evaluation& evaluation, double& number,
                                            std::uint32_t& error) {
    const WalkedAnswer answer = walkOperand(operand, evaluation);
    number = answer.number;
    error = answer.code();
    return answer.walked();
}

// Answers every operand in order, written out one after another (a loop
// over so few keeps its counter and its branch); false at the first that
// cannot be answered so.
template <std::size_t... Index>
[[gnu::always_inline]] inline bool walkOperands(const ASTNode* const* operands, Evaluation& evaluation,
                                                double* numbers, std::uint32_t* errors,
                                                std::index_sequence<Index...>) {
    return (walkInto(operands[Index], evaluation, numbers[Index], errors[Index]) && ...);
}

// A node's answer once its operands are answered.
template <double (*numberRule)(const StackOperands&), std::uint32_t (*errorRule)(const StackOperands&)>
[[gnu::always_inline]] inline WalkedAnswer walkedAnswer(const StackOperands& answers) {
    return WalkedAnswer{numberRule(answers), errorRule(answers)};
}

// A range's operands, kept apart from the few of the other nodes so that
// their walk needs no room for a list.
template <double (*numberRule)(const StackOperands&), std::uint32_t (*errorRule)(const StackOperands&)>
[[gnu::noinline]] WalkedAnswer walkListRules(const ASTNode* const* list, std::size_t count, Evaluation& evaluation) {
    std::vector<double> numbers(count);
    std::vector<std::uint32_t> errors(count);
    for (std::size_t i = 0; i < count; ++i) {
        const WalkedAnswer answer = walkOperand(list[i], evaluation);
        if (!answer.walked()) return WalkedAnswer{};
        numbers[i] = answer.number;
        errors[i] = answer.code();
    }
    const StackOperands answers(numbers.data(), errors.data(), count, true);
    return walkedAnswer<numberRule, errorRule>(answers);
}

// The walk of a class whose answers depend on its operands alone: a host's
// subclass answers through its own operations, so it is left to them.
template <class Node, double (*numberRule)(const StackOperands&), std::uint32_t (*errorRule)(const StackOperands&)>
WalkedAnswer walkOperandRules(const ASTNode& node, Evaluation& evaluation) {
    if (!isExactly<Node>(node)) return WalkedAnswer{};
    const ASTNode* few[3] = {};
    const ASTNode* const* list = nullptr;
    const std::size_t count = operandsOnStack<Node>(node, few, list);
    if (list != nullptr) return walkListRules<numberRule, errorRule>(list, count, evaluation);
    // The count of the few is the class's own, so the loop unrolls.
    constexpr std::size_t kFew = std::is_base_of_v<CNSingleChildNode, Node>    ? 1
                                 : std::is_base_of_v<CNManyChildrenNode, Node> ? 2
                                                                               : 3;
    double numbers[kFew];
    std::uint32_t errors[kFew];
    if (!walkOperands(few, evaluation, numbers, errors, std::make_index_sequence<kFew>{})) return WalkedAnswer{};
    const StackOperands answers(numbers, errors, kFew, false);
    return walkedAnswer<numberRule, errorRule>(answers);
}

// The rules of a class whose answers depend on its operands alone.
template <class Node, double (*numberRule)(const StackOperands&), std::uint32_t (*errorRule)(const StackOperands&)>
constexpr StackRules operandRules() {
    return StackRules{&typeid(Node), &numberOnStack<numberRule>, &errorOnStack<errorRule>, nullptr,
                      &walkOperandRules<Node, numberRule, errorRule>};
}

// The walk of a leaf: its number read where it is kept, its error by its rule.
template <class Node, const double* (*source)(const ASTNode&),
          std::uint32_t (*errorRule)(const ASTNode&, const StackOperands&)>
WalkedAnswer walkLeafRules(const ASTNode& node, Evaluation&) {
    if (!isExactly<Node>(node)) return WalkedAnswer{};
    const StackOperands none(nullptr, nullptr, 0, false);
    return WalkedAnswer{*source(node), errorRule(node, none)};
}

// The rules of a leaf, whose number a program loads from `source`.
template <class Node, const double* (*source)(const ASTNode&),
          double (*numberRule)(const ASTNode&, const StackOperands&),
          std::uint32_t (*errorRule)(const ASTNode&, const StackOperands&)>
constexpr StackRules leafRules() {
    return StackRules{&typeid(Node), numberRule, errorRule, source, &walkLeafRules<Node, source, errorRule>};
}

// Runs a rule with everything it calls written into it, so that the pair's
// copy of a rule knows its form wherever it asks.
template <typename Operands, typename Rule>
[[gnu::flatten]] auto applyRule(Operands& operands, Rule& rule) {
    return rule(operands);
}

template <typename Rule>
[[gnu::always_inline]] inline auto applyToOperands(const CNSingleChildNode& node, Evaluation& evaluation, Rule rule) {
    TreePair one(evaluation, {node.poChild});
    return applyRule(one, rule);
}

// A range's operands, kept out of line so that the frame of every pair's
// question, one per level of a deep tree, has no room for a list.
template <typename Rule>
[[gnu::noinline]] auto applyToList(const std::vector<ASTNode*>& list, Evaluation& evaluation, Rule& rule) {
    TreeOperands operands(evaluation, list);
    return applyRule(operands, rule);
}

// Applies `rule` to the node's operands; the pair and the list each get a
// copy of the rule of their own, so that asking an operand of a pair tests
// nothing about the form.
template <typename Rule>
[[gnu::always_inline]] inline auto applyToOperands(const CNManyChildrenNode& node, Evaluation& evaluation, Rule rule) {
    if (__builtin_expect(node.oChildren.empty(), 1)) {
        TreePair pair(evaluation, {node.poLeft, node.poRight});
        return applyRule(pair, rule);
    }
    return applyToList(node.oChildren, evaluation, rule);
}

// Operand not a number: wrong type; otherwise the operand's own error.
template <typename Operands>
std::uint32_t oneOperandError(Operands& operands) {
    if (operands.type(0) != ExprNumber) return ErrWrongType;
    return operands.error(0);
}

// The type tests of the operand rule: most operations want numbers; a sum
// and a comparison take texts too, and only an operand without a type fails.
inline bool isNotNumber(std::uint32_t type) {
    return type != ExprNumber;
}

inline bool hasNoType(std::uint32_t type) {
    return type == ExprNoType;
}

// Pair: absent operand, then both types, then left and right error.
// List: per element its error, then its type.
template <bool (*wrongType)(std::uint32_t), typename Operands>
std::uint32_t operandsError(Operands& operands) {
    if (!operands.isList()) {
        if (!operands.present(0) || !operands.present(1)) return ErrInvalidArg;
        if (wrongType(operands.type(0))) return ErrWrongType;
        if (wrongType(operands.type(1))) return ErrWrongType;
        const std::uint32_t leftError = operands.error(0);
        if (leftError != ErrNone) return leftError;
        return operands.error(1);
    }
    for (std::size_t i = 0; i < operands.count(); ++i) {
        const std::uint32_t error = operands.error(i);
        if (error != ErrNone) return error;
        if (wrongType(operands.type(i))) return ErrWrongType;
    }
    return ErrNone;
}

}  // namespace cellformula

#endif
