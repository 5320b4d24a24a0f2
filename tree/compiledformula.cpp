#include "compiledformula.h"

#include <algorithm>
#include <cstddef>
#include <typeinfo>

#include "arithmeticrules.h"
#include "comparisonrules.h"
#include "logic.h"
#include "logicrules.h"
#include "mathrules.h"
#include "operands.h"
#include "programrun.h"

namespace cellformula {

CompiledFormula::CompiledFormula(const ASTNode& root) {
    // An explicit post-order walk, so no depth is too deep to compile: each
    // node's step follows its operands' steps, which wait on `finished`.
    struct Visit {
        const ASTNode* node;
        bool operandsDone;
    };
    std::vector<Visit> pending{{&root, false}};
    std::vector<std::uint32_t> finished;
    std::vector<const ASTNode*> listed;
    while (!pending.empty()) {
        const Visit visit = pending.back();
        pending.pop_back();
        listed.clear();
        visit.node->listOperands(listed);
        if (!visit.operandsDone) {
            pending.push_back({visit.node, true});
            for (auto operand = listed.rbegin(); operand != listed.rend(); ++operand) pending.push_back({*operand, false});
            continue;
        }
        const auto first = static_cast<std::uint32_t>(operands_.size());
        operands_.insert(operands_.end(), finished.end() - static_cast<std::ptrdiff_t>(listed.size()), finished.end());
        finished.resize(finished.size() - listed.size());
        finished.push_back(static_cast<std::uint32_t>(steps_.size()));
        steps_.push_back({visit.node, first, static_cast<std::uint32_t>(listed.size())});
    }
    compileNumbers();
}

namespace {

// The operands a node's rules number, all present: a pair both, an IF all three.
bool hasEveryOperand(const ASTNode& node, std::size_t listed) {
    if (const auto* pair = dynamic_cast<const CNManyChildrenNode*>(&node)) {
        return !pair->oChildren.empty() || listed == 2;
    }
    if (dynamic_cast<const CNSingleChildNode*>(&node) != nullptr) return listed == 1;
    if (dynamic_cast<const CNIf*>(&node) != nullptr) return listed == 3;
    return true;
}

bool isList(const ASTNode& node) {
    const auto* many = dynamic_cast<const CNManyChildrenNode*>(&node);
    return many != nullptr && !many->oChildren.empty();
}

}  // namespace

namespace {

// The operations the number program runs inline. Each uses the very rule
// templates its class uses, and is chosen only for a node whose stack rules
// are those templates, so a class whose rules change is simply called.
enum class Operation : std::uint8_t {
    Negate, Add, Subtract, Multiply, Divide, Modulo, Power,
    Greater, Less, GreatEqual, LessEqual, Equal,
    And, Or, Min, Max, Not, IsError, If,
    Sin, Cos, Tan, Asin, Acos, Atan, Sqrt, Ln, Atan2, Log,
    Call,
    // The common two-operand operations again, with the left, the right or
    // both operands leaves read where they live rather than from a slot.
    AddLeft, AddRight, AddBoth, SubtractLeft, SubtractRight, SubtractBoth,
    MultiplyLeft, MultiplyRight, MultiplyBoth, DivideLeft, DivideRight, DivideBoth,
    PowerLeft, PowerRight, PowerBoth, GreaterLeft, GreaterRight, GreaterBoth,
    LessLeft, LessRight, LessBoth,
    // Those whose error may depend on a value, again, for a step whose error
    // a run must confirm (see assumeErrors).
    DivideChecked, ModuloChecked, PowerChecked, AsinChecked, AcosChecked, SqrtChecked, LnChecked, LogChecked,
    IfChecked, DivideLeftChecked, DivideRightChecked, DivideBothChecked, PowerLeftChecked, PowerRightChecked,
    PowerBothChecked
};

// Each code with a confirmed variant, in the order of the variants.
constexpr Operation kCheckable[] = {Operation::Divide, Operation::Modulo, Operation::Power, Operation::Asin,
                                    Operation::Acos, Operation::Sqrt, Operation::Ln, Operation::Log,
                                    Operation::If, Operation::DivideLeft, Operation::DivideRight,
                                    Operation::DivideBoth, Operation::PowerLeft, Operation::PowerRight,
                                    Operation::PowerBoth};

// The confirmed variant of a code, or Call when it has none.
Operation checked(Operation operation) {
    for (std::size_t i = 0; i < sizeof kCheckable / sizeof kCheckable[0]; ++i) {
        if (kCheckable[i] == operation) {
            return static_cast<Operation>(static_cast<unsigned>(Operation::DivideChecked) + i);
        }
    }
    return Operation::Call;
}

// The operations with leaves read in place, in the order of their codes.
constexpr Operation kFusable[] = {Operation::Add, Operation::Subtract, Operation::Multiply, Operation::Divide,
                                  Operation::Power, Operation::Greater, Operation::Less};

// The code of a fusable operation whose operands `leaves` (bit 0 the left,
// bit 1 the right) are leaves read in place; the operation itself otherwise.
Operation withLeaves(Operation operation, unsigned leaves) {
    if (leaves == 0) return operation;
    for (std::size_t i = 0; i < sizeof kFusable / sizeof kFusable[0]; ++i) {
        if (kFusable[i] != operation) continue;
        return static_cast<Operation>(static_cast<unsigned>(Operation::AddLeft) + 3 * i + leaves - 1);
    }
    return operation;
}

bool isFusable(Operation operation) {
    return withLeaves(operation, 1) != operation;
}

using namespace rules;

template <auto numberRule, auto errorRule, bool takesList = false>
struct RulePair {
    static constexpr auto number = numberRule;
    static constexpr auto error = errorRule;
    static constexpr bool list = takesList;  // a range's node has its operands in a list
};

// The number and error rule of each inline operation, over a kind of operands.
template <Operation operation, typename Operands>
struct RulesOf;

template <typename O>
struct RulesOf<Operation::Negate, O> : RulePair<&negated<O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::Add, O> : RulePair<&sum<O>, &sumError<O>, true> {};
template <typename O>
struct RulesOf<Operation::Subtract, O> : RulePair<&difference<O>, &operandsError<isNotNumber, O>> {};
template <typename O>
struct RulesOf<Operation::Multiply, O> : RulePair<&product<O>, &operandsError<isNotNumber, O>> {};
template <typename O>
struct RulesOf<Operation::Divide, O> : RulePair<&quotient<O>, &divisorError<O>> {};
template <typename O>
struct RulesOf<Operation::Modulo, O> : RulePair<&rules::remainder<O>, &divisorError<O>> {};
template <typename O>
struct RulesOf<Operation::Power, O> : RulePair<&power<O>, &powerError<O>> {};
template <typename O>
struct RulesOf<Operation::Greater, O> : RulePair<&compare<Relation::Greater, O>, &comparisonError<O>> {};
template <typename O>
struct RulesOf<Operation::Less, O> : RulePair<&compare<Relation::Less, O>, &comparisonError<O>> {};
template <typename O>
struct RulesOf<Operation::GreatEqual, O> : RulePair<&compare<Relation::GreatEqual, O>, &comparisonError<O>> {};
template <typename O>
struct RulesOf<Operation::LessEqual, O> : RulePair<&compare<Relation::LessEqual, O>, &comparisonError<O>> {};
template <typename O>
struct RulesOf<Operation::Equal, O> : RulePair<&compare<Relation::Equal, O>, &comparisonError<O>> {};
template <typename O>
struct RulesOf<Operation::And, O> : RulePair<&connect<false, O>, &operandsError<isNotNumber, O>, true> {};
template <typename O>
struct RulesOf<Operation::Or, O> : RulePair<&connect<true, O>, &operandsError<isNotNumber, O>, true> {};
template <typename O>
struct RulesOf<Operation::Min, O> : RulePair<&reduce<smaller, O>, &operandsError<isNotNumber, O>, true> {};
template <typename O>
struct RulesOf<Operation::Max, O> : RulePair<&reduce<larger, O>, &operandsError<isNotNumber, O>, true> {};
template <typename O>
struct RulesOf<Operation::Not, O> : RulePair<&negation<O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::IsError, O> : RulePair<&anyError<O>, &unmaskedError<O>> {};
template <typename O>
struct RulesOf<Operation::If, O> : RulePair<&choice<O>, &choiceError<O>> {};
template <typename O>
struct RulesOf<Operation::Sin, O> : RulePair<&applied<sine, O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::Cos, O> : RulePair<&applied<cosine, O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::Tan, O> : RulePair<&applied<tangent, O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::Asin, O> : RulePair<&applied<arcSine, O>, &domainError<withinUnitRange, O>> {};
template <typename O>
struct RulesOf<Operation::Acos, O> : RulePair<&applied<arcCosine, O>, &domainError<withinUnitRange, O>> {};
template <typename O>
struct RulesOf<Operation::Atan, O> : RulePair<&applied<arcTangent, O>, &oneOperandError<O>> {};
template <typename O>
struct RulesOf<Operation::Sqrt, O> : RulePair<&applied<squareRoot, O>, &domainError<notNegative, O>> {};
template <typename O>
struct RulesOf<Operation::Ln, O> : RulePair<&applied<naturalLogarithm, O>, &domainError<positive, O>> {};
template <typename O>
struct RulesOf<Operation::Atan2, O> : RulePair<&angle<O>, &operandsError<isNotNumber, O>> {};
template <typename O>
struct RulesOf<Operation::Log, O> : RulePair<&logarithm<O>, &logarithmError<O>> {};

// The rules of an operation together with the kind of operands they run over.
template <Operation operation, typename O, bool confirms = false>
struct Choice : RulesOf<operation, O> {
    using Operands = O;
    static constexpr bool kConfirms = confirms;  // the step's error must be confirmed
};

// Hands `visit` the number and error rule of an inline operation, over the
// operands `OperandsOf<leaves>` for the leaves it reads in place; false for a
// call. One switch for all, so that running an instruction takes one jump.
template <template <unsigned> class OperandsOf, typename Visit>
[[gnu::always_inline]] inline bool withRules(Operation operation, Visit&& visit) {
    switch (operation) {
        case Operation::Negate: return visit(Choice<Operation::Negate, OperandsOf<0>>{}), true;
        case Operation::Add: return visit(Choice<Operation::Add, OperandsOf<0>>{}), true;
        case Operation::Subtract: return visit(Choice<Operation::Subtract, OperandsOf<0>>{}), true;
        case Operation::Multiply: return visit(Choice<Operation::Multiply, OperandsOf<0>>{}), true;
        case Operation::Divide: return visit(Choice<Operation::Divide, OperandsOf<0>>{}), true;
        case Operation::Modulo: return visit(Choice<Operation::Modulo, OperandsOf<0>>{}), true;
        case Operation::Power: return visit(Choice<Operation::Power, OperandsOf<0>>{}), true;
        case Operation::Greater: return visit(Choice<Operation::Greater, OperandsOf<0>>{}), true;
        case Operation::Less: return visit(Choice<Operation::Less, OperandsOf<0>>{}), true;
        case Operation::GreatEqual: return visit(Choice<Operation::GreatEqual, OperandsOf<0>>{}), true;
        case Operation::LessEqual: return visit(Choice<Operation::LessEqual, OperandsOf<0>>{}), true;
        case Operation::Equal: return visit(Choice<Operation::Equal, OperandsOf<0>>{}), true;
        case Operation::And: return visit(Choice<Operation::And, OperandsOf<0>>{}), true;
        case Operation::Or: return visit(Choice<Operation::Or, OperandsOf<0>>{}), true;
        case Operation::Min: return visit(Choice<Operation::Min, OperandsOf<0>>{}), true;
        case Operation::Max: return visit(Choice<Operation::Max, OperandsOf<0>>{}), true;
        case Operation::Not: return visit(Choice<Operation::Not, OperandsOf<0>>{}), true;
        case Operation::IsError: return visit(Choice<Operation::IsError, OperandsOf<0>>{}), true;
        case Operation::If: return visit(Choice<Operation::If, OperandsOf<0>>{}), true;
        case Operation::Sin: return visit(Choice<Operation::Sin, OperandsOf<0>>{}), true;
        case Operation::Cos: return visit(Choice<Operation::Cos, OperandsOf<0>>{}), true;
        case Operation::Tan: return visit(Choice<Operation::Tan, OperandsOf<0>>{}), true;
        case Operation::Asin: return visit(Choice<Operation::Asin, OperandsOf<0>>{}), true;
        case Operation::Acos: return visit(Choice<Operation::Acos, OperandsOf<0>>{}), true;
        case Operation::Atan: return visit(Choice<Operation::Atan, OperandsOf<0>>{}), true;
        case Operation::Sqrt: return visit(Choice<Operation::Sqrt, OperandsOf<0>>{}), true;
        case Operation::Ln: return visit(Choice<Operation::Ln, OperandsOf<0>>{}), true;
        case Operation::Atan2: return visit(Choice<Operation::Atan2, OperandsOf<0>>{}), true;
        case Operation::Log: return visit(Choice<Operation::Log, OperandsOf<0>>{}), true;
        case Operation::Call: return false;
        case Operation::AddLeft: return visit(Choice<Operation::Add, OperandsOf<1>>{}), true;
        case Operation::AddRight: return visit(Choice<Operation::Add, OperandsOf<2>>{}), true;
        case Operation::AddBoth: return visit(Choice<Operation::Add, OperandsOf<3>>{}), true;
        case Operation::SubtractLeft: return visit(Choice<Operation::Subtract, OperandsOf<1>>{}), true;
        case Operation::SubtractRight: return visit(Choice<Operation::Subtract, OperandsOf<2>>{}), true;
        case Operation::SubtractBoth: return visit(Choice<Operation::Subtract, OperandsOf<3>>{}), true;
        case Operation::MultiplyLeft: return visit(Choice<Operation::Multiply, OperandsOf<1>>{}), true;
        case Operation::MultiplyRight: return visit(Choice<Operation::Multiply, OperandsOf<2>>{}), true;
        case Operation::MultiplyBoth: return visit(Choice<Operation::Multiply, OperandsOf<3>>{}), true;
        case Operation::DivideLeft: return visit(Choice<Operation::Divide, OperandsOf<1>>{}), true;
        case Operation::DivideRight: return visit(Choice<Operation::Divide, OperandsOf<2>>{}), true;
        case Operation::DivideBoth: return visit(Choice<Operation::Divide, OperandsOf<3>>{}), true;
        case Operation::PowerLeft: return visit(Choice<Operation::Power, OperandsOf<1>>{}), true;
        case Operation::PowerRight: return visit(Choice<Operation::Power, OperandsOf<2>>{}), true;
        case Operation::PowerBoth: return visit(Choice<Operation::Power, OperandsOf<3>>{}), true;
        case Operation::GreaterLeft: return visit(Choice<Operation::Greater, OperandsOf<1>>{}), true;
        case Operation::GreaterRight: return visit(Choice<Operation::Greater, OperandsOf<2>>{}), true;
        case Operation::GreaterBoth: return visit(Choice<Operation::Greater, OperandsOf<3>>{}), true;
        case Operation::LessLeft: return visit(Choice<Operation::Less, OperandsOf<1>>{}), true;
        case Operation::LessRight: return visit(Choice<Operation::Less, OperandsOf<2>>{}), true;
        case Operation::LessBoth: return visit(Choice<Operation::Less, OperandsOf<3>>{}), true;
        case Operation::DivideChecked: return visit(Choice<Operation::Divide, OperandsOf<0>, true>{}), true;
        case Operation::ModuloChecked: return visit(Choice<Operation::Modulo, OperandsOf<0>, true>{}), true;
        case Operation::PowerChecked: return visit(Choice<Operation::Power, OperandsOf<0>, true>{}), true;
        case Operation::AsinChecked: return visit(Choice<Operation::Asin, OperandsOf<0>, true>{}), true;
        case Operation::AcosChecked: return visit(Choice<Operation::Acos, OperandsOf<0>, true>{}), true;
        case Operation::SqrtChecked: return visit(Choice<Operation::Sqrt, OperandsOf<0>, true>{}), true;
        case Operation::LnChecked: return visit(Choice<Operation::Ln, OperandsOf<0>, true>{}), true;
        case Operation::LogChecked: return visit(Choice<Operation::Log, OperandsOf<0>, true>{}), true;
        case Operation::IfChecked: return visit(Choice<Operation::If, OperandsOf<0>, true>{}), true;
        case Operation::DivideLeftChecked: return visit(Choice<Operation::Divide, OperandsOf<1>, true>{}), true;
        case Operation::DivideRightChecked: return visit(Choice<Operation::Divide, OperandsOf<2>, true>{}), true;
        case Operation::DivideBothChecked: return visit(Choice<Operation::Divide, OperandsOf<3>, true>{}), true;
        case Operation::PowerLeftChecked: return visit(Choice<Operation::Power, OperandsOf<1>, true>{}), true;
        case Operation::PowerRightChecked: return visit(Choice<Operation::Power, OperandsOf<2>, true>{}), true;
        case Operation::PowerBothChecked: return visit(Choice<Operation::Power, OperandsOf<3>, true>{}), true;
    }
    return false;
}

template <unsigned>
using OnStack = const StackOperands;

// The inline operation whose rules a node's stack rules are, or a call.
Operation operationOf(const StackRules& stackRules) {
    for (auto candidate = static_cast<std::uint8_t>(Operation::Negate);
         candidate < static_cast<std::uint8_t>(Operation::Call); ++candidate) {
        bool same = false;
        withRules<OnStack>(static_cast<Operation>(candidate), [&](auto pair) {
            using Pair = decltype(pair);
            same = stackRules.number == &numberOnStack<Pair::number> && stackRules.error == &errorOnStack<Pair::error>;
        });
        if (same) return static_cast<Operation>(candidate);
    }
    return Operation::Call;
}

// An instruction's operands, read from the slots the leaves and the earlier
// instructions filled, or, for the operands `leaves` names (bit 0 the
// first), from where those leaves live; all of them are numbers. Their
// errors are read from the slots too, or from the instruction's list, which
// holds a leaf's own error and, for a step being confirmed, what compiling
// assumed of every operand.
template <unsigned leaves>
class SlotOperands {
public:
    SlotOperands(const double* numbers, const std::uint32_t* errors, const std::uint32_t* slots, std::size_t count,
                 bool list, const double* const* leafNumbers, const std::uint32_t* leafErrors)
        : numbers_(numbers), errors_(errors), slots_(slots), errorSlots_(slots), leafNumbers_(leafNumbers),
          leafErrors_(leafErrors), count_(count), list_(list) {}
    // Confirming what compiling assumed: every error from the list.
    SlotOperands(const double* numbers, const std::uint32_t* slots, std::size_t count,
                 const double* const* leafNumbers, const std::uint32_t* assumedErrors)
        : numbers_(numbers), errors_(assumedErrors), slots_(slots), errorSlots_(kInOrder), leafNumbers_(leafNumbers),
          leafErrors_(assumedErrors), count_(count), list_(false) {}

    static constexpr bool kReadsLeaves = leaves != 0;

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) const {
        if (isLeaf(i)) return *leafNumbers_[i];
        return numbers_[slots_[i]];
    }
    double condition(std::size_t i) const { return number(i); }
    std::string text(std::size_t) const { return std::string(); }
    std::uint32_t type(std::size_t) const { return ExprNumber; }
    std::uint32_t error(std::size_t i) const {
        if (isLeaf(i)) return leafErrors_[i];
        return errors_[errorSlots_[i]];
    }

private:
    static constexpr std::uint32_t kInOrder[3] = {0, 1, 2};
    static bool isLeaf(std::size_t i) { return i < 2 && ((leaves >> i) & 1u) != 0; }

    const double* numbers_;
    const std::uint32_t* errors_;
    const std::uint32_t* slots_;
    const std::uint32_t* errorSlots_;
    const double* const* leafNumbers_;
    const std::uint32_t* leafErrors_;
    std::size_t count_;
    bool list_;
};

// Operands as compiling knows them: each one's assumed error, and the value
// of a constant; a rule that asks for any other value notes it, since its
// answer then depends on the evaluation.
class AssumedOperands {
public:
    AssumedOperands(const std::uint32_t* errors, const double* constants, const unsigned char* constant,
                    std::size_t count, bool list)
        : errors_(errors), constants_(constants), constant_(constant), count_(count), list_(list) {}

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) {
        if (constant_[i] == 0) readsValue_ = true;
        return constants_[i];
    }
    double condition(std::size_t i) { return number(i); }
    std::string text(std::size_t) const { return std::string(); }
    std::uint32_t type(std::size_t) const { return ExprNumber; }
    std::uint32_t error(std::size_t i) const { return errors_[i]; }
    bool readsValue() const { return readsValue_; }

private:
    const std::uint32_t* errors_;
    const double* constants_;
    const unsigned char* constant_;
    std::size_t count_;
    bool list_;
    bool readsValue_ = false;
};

template <unsigned>
using Assumed = AssumedOperands;

template <unsigned leaves>
using InSlots = const SlotOperands<leaves>;

bool isConstant(const ASTNode& node) {
    return typeid(node) == typeid(CNConstant) || typeid(node) == typeid(CNPi);
}

}  // namespace

void CompiledFormula::compileNumbers() {
    std::vector<Operation> operationOfStep(steps_.size(), Operation::Call);
    std::vector<const double*> sourceOf(steps_.size(), nullptr);
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        const StackRules* stackRules = step.node->stackRules();
        if (stackRules == nullptr || typeid(*step.node) != *stackRules->owner) return;
        if (!hasEveryOperand(*step.node, step.operandCount)) return;
        if (stackRules->source != nullptr) {
            sourceOf[index] = stackRules->source(*step.node);
        } else {
            operationOfStep[index] = operationOf(*stackRules);
        }
    }
    // A leaf read by a common two-operand operation is read where it lives;
    // the others are copied into slots first.
    std::vector<bool> readInPlace(steps_.size(), false);
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        if (!isFusable(operationOfStep[index]) || isList(*step.node) || step.operandCount != 2) continue;
        for (std::uint32_t i = 0; i < 2; ++i) {
            const std::uint32_t operandStep = operands_[step.firstOperand + i];
            readInPlace[operandStep] = sourceOf[operandStep] != nullptr;
        }
    }
    std::size_t leafCount = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        if (sourceOf[index] != nullptr && !readInPlace[index]) ++leafCount;
    }
    // Slots: the copied leaves, then the results still waiting for the
    // instruction that reads them (a stack), then room to copy a call's operands.
    std::vector<std::uint32_t> slotOf(steps_.size());
    std::vector<std::uint32_t> leafErrorOf(steps_.size(), ErrNone);
    std::size_t depth = 0;
    std::size_t resultRoom = 0;
    std::size_t gatherRoom = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        const StackRules* stackRules = step.node->stackRules();
        if (sourceOf[index] != nullptr) {
            const StackOperands none(nullptr, nullptr, 0, false);
            leafErrorOf[index] = stackRules->error(*step.node, none);
            if (readInPlace[index]) continue;
            slotOf[index] = static_cast<std::uint32_t>(leafSources_.size());
            leafSources_.push_back(sourceOf[index]);
            leafErrors_.push_back(leafErrorOf[index]);
            continue;
        }
        const Operation operation = operationOfStep[index];
        Instruction instruction{static_cast<std::uint8_t>(operation), isList(*step.node), step.operandCount,
                                {0, 0, 0}, 0, {ErrNone, ErrNone, ErrNone}, {nullptr, nullptr}};
        // Only a range has more than three operands.
        const bool spread = instruction.list;
        if (spread) instruction.operands[0] = static_cast<std::uint32_t>(listSlots_.size());
        unsigned leaves = 0;
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
            const std::uint32_t operandStep = operands_[step.firstOperand + i];
            if (readInPlace[operandStep]) {
                leaves |= 1u << i;
                instruction.leaves[i] = sourceOf[operandStep];
                instruction.assumedErrors[i] = leafErrorOf[operandStep];
                continue;
            }
            if (spread) {
                listSlots_.push_back(slotOf[operandStep]);
            } else {
                instruction.operands[i] = slotOf[operandStep];
            }
            if (sourceOf[operandStep] == nullptr) --depth;
        }
        instruction.operation = static_cast<std::uint8_t>(withLeaves(operation, leaves));
        instruction.result = static_cast<std::uint32_t>(leafCount + depth);
        slotOf[index] = instruction.result;
        ++depth;
        resultRoom = std::max(resultRoom, depth);
        if (operation == Operation::Call) gatherRoom = std::max<std::size_t>(gatherRoom, step.operandCount);
        valueNeedsErrors_ = valueNeedsErrors_ || operation == Operation::IsError || operation == Operation::Call;
        instructions_.push_back(instruction);
        calls_.push_back({step.node, stackRules});
    }
    gatherSlot_ = static_cast<std::uint32_t>(leafCount + resultRoom);
    slotCount_ = gatherSlot_ + gatherRoom;
    // A program of one leaf reads it from its slot.
    rootSlot_ = slotOf.back();
    numbersOnly_ = true;
    assumeErrors(sourceOf, leafErrorOf);
}

// Works out every step's error on the assumption that no step whose error
// depends on a value meets one; a run then only checks those steps.
void CompiledFormula::assumeErrors(const std::vector<const double*>& sourceOf,
                                   const std::vector<std::uint32_t>& leafErrorOf) {
    std::vector<std::uint32_t> assumed(steps_.size(), ErrNone);
    std::vector<double> value(steps_.size(), 0.0);
    std::vector<bool> constant(steps_.size(), false);
    std::vector<std::uint32_t> errors;
    std::vector<double> constants;
    std::vector<unsigned char> constantFlags;
    std::size_t instruction = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        if (sourceOf[index] != nullptr) {
            assumed[index] = leafErrorOf[index];
            constant[index] = isConstant(*step.node);
            value[index] = *sourceOf[index];
            continue;
        }
        Instruction& compiled = instructions_[instruction++];
        errors.clear();
        constants.clear();
        constantFlags.clear();
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
            const std::uint32_t operandStep = operands_[step.firstOperand + i];
            errors.push_back(assumed[operandStep]);
            constants.push_back(value[operandStep]);
            constantFlags.push_back(constant[operandStep] ? 1 : 0);
        }
        AssumedOperands operands(errors.data(), constants.data(), constantFlags.data(), step.operandCount,
                                 compiled.list);
        bool known = false;
        withRules<Assumed>(static_cast<Operation>(compiled.operation), [&](auto pair) {
            using Pair = decltype(pair);
            const std::uint32_t error = Pair::error(operands);
            if (operands.readsValue()) return;
            assumed[index] = error;
            known = true;
        });
        if (known) continue;
        // A step whose error a run can confirm is assumed to meet none; any
        // other (a called rule) leaves every error to be worked out at each run.
        const Operation confirming = checked(static_cast<Operation>(compiled.operation));
        if (confirming == Operation::Call) {
            errorsAssumed_ = false;
            continue;
        }
        compiled.operation = static_cast<std::uint8_t>(confirming);
        for (std::uint32_t i = 0; i < step.operandCount; ++i) compiled.assumedErrors[i] = errors[i];
    }
    assumedRootError_ = assumed.back();
}

// Inlined into its callers, so that a short formula pays for one call only.
template <CompiledFormula::Errors errorWork>
[[gnu::always_inline]] inline CompiledFormula::NumberAnswer CompiledFormula::runNumbers(
    double* numbers, std::uint32_t* errors) const {
    constexpr bool computeErrors = errorWork == Errors::Compute;
    const std::size_t leafCount = leafSources_.size();
    const double* const* sources = leafSources_.data();
    // Four at a time: loading the leaves is a good part of a short formula.
    std::size_t leaf = 0;
    for (; leaf + 4 <= leafCount; leaf += 4) {
        numbers[leaf] = *sources[leaf];
        numbers[leaf + 1] = *sources[leaf + 1];
        numbers[leaf + 2] = *sources[leaf + 2];
        numbers[leaf + 3] = *sources[leaf + 3];
    }
    for (; leaf < leafCount; ++leaf) numbers[leaf] = *sources[leaf];
    if (computeErrors) std::copy(leafErrors_.begin(), leafErrors_.end(), errors);
    bool assumptionHolds = true;
    const std::uint32_t* lists = listSlots_.data();
    const Instruction* const first = instructions_.data();
    const std::size_t instructionCount = instructions_.size();
    for (std::size_t index = 0; index < instructionCount; ++index) {
        const Instruction& instruction = first[index];
        // Both answers are worked out before either is stored: the result may
        // take the slot of an operand that the error rule reads.
        double number = 0.0;
        std::uint32_t error = ErrNone;
        const bool ranInline = withRules<InSlots>(static_cast<Operation>(instruction.operation), [&](auto pair) {
            using Pair = decltype(pair);
            using Operands = typename Pair::Operands;
            // An operation with leaves read in place is never a range's.
            const bool list = Pair::list && !Operands::kReadsLeaves && instruction.list;
            const Operands operands(numbers, errors, list ? lists + instruction.operands[0] : instruction.operands,
                                    instruction.count, list, instruction.leaves, instruction.assumedErrors);
            number = Pair::number(operands);
            if constexpr (computeErrors) error = Pair::error(operands);
            if constexpr (errorWork == Errors::Check) {
                if constexpr (Pair::kConfirms) {
                    const Operands checked(numbers, instruction.operands, instruction.count, instruction.leaves,
                                           instruction.assumedErrors);
                    if (Pair::error(checked) != ErrNone) assumptionHolds = false;
                }
            }
        });
        if (!ranInline) {
            // A call's operands are never leaves read in place.
            const SlotOperands<0> operands(numbers, errors,
                                           instruction.list ? lists + instruction.operands[0] : instruction.operands,
                                           instruction.count, instruction.list, instruction.leaves,
                                           instruction.assumedErrors);
            for (std::uint32_t i = 0; i < instruction.count; ++i) {
                numbers[gatherSlot_ + i] = operands.number(i);
                if (computeErrors) errors[gatherSlot_ + i] = operands.error(i);
            }
            const Call& call = calls_[index];
            const StackOperands gathered(numbers + gatherSlot_, errors + gatherSlot_, instruction.count, instruction.list);
            number = call.rules->number(*call.node, gathered);
            if (computeErrors) error = call.rules->error(*call.node, gathered);
        }
        numbers[instruction.result] = number;
        if (computeErrors) errors[instruction.result] = error;
    }
    if constexpr (errorWork == Errors::Check) {
        // A step met an error after all: the rare case works out every error.
        if (!assumptionHolds) return runNumbers<Errors::Compute>(numbers, errors);
        return NumberAnswer{numbers[rootSlot_], assumedRootError_};
    }
    return NumberAnswer{numbers[rootSlot_], computeErrors ? errors[rootSlot_] : ErrNone};
}

// Flattened: every rule the switch names is inlined into the loop.
template <CompiledFormula::Errors errorWork>
[[gnu::flatten]] CompiledFormula::NumberAnswer CompiledFormula::runNumbersInPlace() const {
    // Most formulas fit slots in place, left unset: each is written before
    // it is read. A long formula gets its own.
    constexpr std::size_t kInlineSlots = 64;
    if (slotCount_ > kInlineSlots) return runNumbersOnHeap<errorWork>();
    double numbers[kInlineSlots];
    std::uint32_t errors[kInlineSlots];
    return runNumbers<errorWork>(numbers, errors);
}

template <CompiledFormula::Errors errorWork>
[[gnu::flatten]] CompiledFormula::NumberAnswer CompiledFormula::runNumbersOnHeap() const {
    std::vector<double> numbers(slotCount_);
    std::vector<std::uint32_t> errors(slotCount_);
    return runNumbers<errorWork>(numbers.data(), errors.data());
}

CompiledFormula::NumberAnswer CompiledFormula::runNumbers(Errors errors) const {
    // ISERROR reads errors for its value, and a called rule may: then every
    // error is worked out.
    if (valueNeedsErrors_) return runNumbersInPlace<Errors::Compute>();
    if (errors == Errors::Skip) return runNumbersInPlace<Errors::Skip>();
    if (!errorsAssumed_) return runNumbersInPlace<Errors::Compute>();
    return runNumbersInPlace<Errors::Check>();
}

namespace {

// The general program, out of line so that the number program's callers stay small.
[[gnu::noinline]] double generalNumber(const CompiledFormula& program) {
    ProgramRun run(program);
    return run.rootNumber();
}

[[gnu::noinline]] FormulaResult generalResult(const CompiledFormula& program) {
    ProgramRun run(program);
    FormulaResult result;
    result.u32Type = run.rootType();
    result.u32Error = run.rootError();
    if (result.u32Type == ExprNumber) {
        result.f64Value = run.rootNumber();
    } else {
        result.oText = run.rootText();
    }
    return result;
}

}  // namespace

double CompiledFormula::f64Evaluate() const {
    if (numbersOnly_) return runNumbers(Errors::Skip).number;
    return generalNumber(*this);
}

std::string CompiledFormula::stringEvaluate() const {
    ProgramRun run(*this);
    return run.rootText();
}

std::uint32_t CompiledFormula::exprType() const {
    if (numbersOnly_) return ExprNumber;
    ProgramRun run(*this);
    return run.rootType();
}

std::uint32_t CompiledFormula::errType() const {
    if (numbersOnly_) return runNumbers(Errors::Check).error;
    ProgramRun run(*this);
    return run.rootError();
}

FormulaResult CompiledFormula::oEvaluateAll() const {
    if (numbersOnly_) {
        const NumberAnswer answer = runNumbers(Errors::Check);
        FormulaResult result;
        result.u32Type = ExprNumber;
        result.u32Error = answer.error;
        result.f64Value = answer.number;
        return result;
    }
    return generalResult(*this);
}

}  // namespace cellformula
