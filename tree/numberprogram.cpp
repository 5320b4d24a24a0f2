// The number program of a compiled formula: how a tree whose nodes are all
// numbers is compiled into instructions over slots, and how those run.
#include "compiledformula.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "logic.h"
#include "numberoperations.h"
#include "operands.h"

namespace cellformula {

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

using numbers::Operation;
using numbers::OnStack;
using numbers::checked;
using numbers::isFusable;
using numbers::operationOf;
using numbers::withLeafList;
using numbers::withOperands;
using numbers::withRules;

// An instruction's operands, read from the slots the leaves and the earlier
// instructions filled, or where `shape` says otherwise: bits 0 and 1 name
// the first and second operand as leaves read where they live, bits 2 and 3
// as the previous instruction's result, which the run keeps at hand, and bit
// 4 every operand of a range as a leaf read where it lives. All of
// them are numbers. Their errors are read from the slots too, or from the
// instruction's list, which holds a leaf's own error and, for a step being
// confirmed, what compiling assumed of every operand.
template <unsigned shape>
class SlotOperands {
public:
    SlotOperands(const double* numbers, const std::uint32_t* errors, const std::uint32_t* slots, std::size_t count,
                 bool list, const double* const* leafNumbers, const std::uint32_t* leafErrors, double previous)
        : numbers_(numbers), errors_(errors), slots_(slots), errorSlots_(slots), leafNumbers_(leafNumbers),
          leafErrors_(leafErrors), previous_(previous), count_(count), list_(list) {}
    // Confirming what compiling assumed: every error from the list.
    SlotOperands(const double* numbers, const std::uint32_t* slots, std::size_t count,
                 const double* const* leafNumbers, const std::uint32_t* assumedErrors, double previous)
        : numbers_(numbers), errors_(assumedErrors), slots_(slots), errorSlots_(kInOrder), leafNumbers_(leafNumbers),
          leafErrors_(assumedErrors), previous_(previous), count_(count), list_(false) {}

    // An operation whose operands have a shape is never a range's, but for a range of leaves.
    static constexpr bool kFixedCount = (shape & 15u) != 0;
    static constexpr bool kLeafList = (shape & 16u) != 0;

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) const {
        if (isLeaf(i)) return *leafNumbers_[i];
        if (isPrevious(i)) return previous_;
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
    static bool isLeaf(std::size_t i) { return kLeafList || (i < 2 && ((shape >> i) & 1u) != 0); }
    static bool isPrevious(std::size_t i) { return i < 2 && ((shape >> (i + 2)) & 1u) != 0; }

    const double* numbers_;
    const std::uint32_t* errors_;
    const std::uint32_t* slots_;
    const std::uint32_t* errorSlots_;
    const double* const* leafNumbers_;
    const std::uint32_t* leafErrors_;
    double previous_;
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

template <unsigned shape>
using InSlots = const SlotOperands<shape>;

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
    // A leaf read by an operation of one or two operands is read where it
    // lives; the others (a range's, an IF's, a call's) are copied into slots first.
    std::vector<bool> readInPlace(steps_.size(), false);
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        if (isList(*step.node)) {
            // A range is read in place only when every operand is a leaf.
            if (withLeafList(operationOfStep[index]) == operationOfStep[index]) continue;
            bool allLeaves = true;
            for (std::uint32_t i = 0; i < step.operandCount; ++i) {
                allLeaves = allLeaves && sourceOf[operands_[step.firstOperand + i]] != nullptr;
            }
            if (!allLeaves) continue;
            for (std::uint32_t i = 0; i < step.operandCount; ++i) readInPlace[operands_[step.firstOperand + i]] = true;
            continue;
        }
        if (!isFusable(operationOfStep[index]) || step.operandCount > 2) continue;
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
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
                                {0, 0, 0}, 0, {ErrNone, ErrNone, ErrNone}, {nullptr, nullptr, nullptr}};
        // Only a range has more than three operands.
        const bool spread = instruction.list;
        if (spread) instruction.operands[0] = static_cast<std::uint32_t>(listSlots_.size());
        const bool leafList = spread && step.operandCount > 0 && readInPlace[operands_[step.firstOperand]];
        if (leafList) {
            instruction.operands[0] = static_cast<std::uint32_t>(listLeaves_.size());
            for (std::uint32_t i = 0; i < step.operandCount; ++i) {
                const std::uint32_t operandStep = operands_[step.firstOperand + i];
                listLeaves_.push_back(sourceOf[operandStep]);
                listLeafErrors_.push_back(leafErrorOf[operandStep]);
            }
            instruction.operation = static_cast<std::uint8_t>(withLeafList(operation));
            slotOf[index] = static_cast<std::uint32_t>(leafCount + depth);
            instruction.result = slotOf[index];
            ++depth;
            resultRoom = std::max(resultRoom, depth);
            instructions_.push_back(instruction);
            calls_.push_back({step.node, stackRules});
            continue;
        }
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
        instruction.operation =
            static_cast<std::uint8_t>(withOperands(operation, leaves, step.operandCount, instruction.list));
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
    mergeSteps();
    leafCount_ = static_cast<std::uint32_t>(leafSources_.size());
    instructionCount_ = static_cast<std::uint32_t>(instructions_.size());
    valueInPlace_ = !valueNeedsErrors_ && slotCount_ <= kInlineSlots;
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
            // Steps are merged only after this.
            if constexpr (!numbers::kCalls<Pair>) {
                if constexpr (!Pair::kMerged) {
                    const std::uint32_t error = Pair::error(operands);
                    if (operands.readsValue()) return;
                    assumed[index] = error;
                    known = true;
                }
            }
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

// Merges each step of two leaves into the next step where that one's right
// operand is it and its left the result before it, or where its left operand
// is it and its right a leaf: one dispatch for both.
void CompiledFormula::mergeSteps() {
    std::vector<Instruction> kept;
    std::vector<Call> keptCalls;
    for (std::size_t index = 0; index < instructions_.size(); ++index) {
        const Instruction& inner = instructions_[index];
        if (index + 1 < instructions_.size()) {
            const Instruction& outer = instructions_[index + 1];
            const Operation code = numbers::merged(static_cast<Operation>(inner.operation),
                                                   static_cast<Operation>(outer.operation));
            const bool onLeft = code != Operation::Call && numbers::innerOnLeft(code);
            if (code != Operation::Call && (onLeft || outer.operands[1] == inner.result)) {
                Instruction both = inner;
                both.operation = static_cast<std::uint8_t>(code);
                if (onLeft) {
                    both.leaves[2] = outer.leaves[1];
                    both.assumedErrors[2] = outer.assumedErrors[1];
                } else {
                    both.operands[0] = outer.operands[0];
                }
                both.result = outer.result;
                kept.push_back(both);
                keptCalls.push_back(calls_[index + 1]);
                ++index;
                continue;
            }
        }
        kept.push_back(inner);
        keptCalls.push_back(calls_[index]);
    }
    instructions_ = std::move(kept);
    calls_ = std::move(keptCalls);
}

// Inlined into its callers, so that a short formula pays for one call only.
template <CompiledFormula::Errors errorWork>
[[gnu::always_inline]] inline CompiledFormula::NumberAnswer CompiledFormula::runNumbers(
    double* numbers, std::uint32_t* errors) const {
    constexpr bool computeErrors = errorWork == Errors::Compute;
    // Most short formulas copy no leaf, or a few: the counts are kept so
    // that neither loop works them out.
    const double* const* sources = leafSources_.data();
    for (std::uint32_t leaf = 0; leaf < leafCount_; ++leaf) numbers[leaf] = *sources[leaf];
    if (computeErrors) std::copy(leafErrors_.begin(), leafErrors_.end(), errors);
    bool assumptionHolds = true;
    // The last result, which most instructions take as an operand.
    double previous = 0.0;
    const std::uint32_t* lists = listSlots_.data();
    const Instruction* const first = instructions_.data();
    const std::uint32_t instructionCount = instructionCount_;
    for (std::uint32_t index = 0; index < instructionCount; ++index) {
        const Instruction& instruction = first[index];
        // Both answers are worked out before either is stored: the result may
        // take the slot of an operand that the error rule reads.
        double number = 0.0;
        std::uint32_t error = ErrNone;
        withRules<InSlots>(static_cast<Operation>(instruction.operation), [&](auto pair) {
            using Pair = decltype(pair);
            if constexpr (numbers::kCalls<Pair>) {
                // A call's operands are never leaves read in place.
                const std::uint32_t* slots = instruction.list ? lists + instruction.operands[0] : instruction.operands;
                const SlotOperands<0> operands(numbers, errors, slots, instruction.count, instruction.list,
                                               instruction.leaves, instruction.assumedErrors, previous);
                for (std::uint32_t i = 0; i < instruction.count; ++i) {
                    numbers[gatherSlot_ + i] = operands.number(i);
                    if (computeErrors) errors[gatherSlot_ + i] = operands.error(i);
                }
                const Call& call = calls_[index];
                const StackOperands gathered(numbers + gatherSlot_, errors + gatherSlot_, instruction.count,
                                             instruction.list);
                number = call.rules->number(*call.node, gathered);
                if (computeErrors) error = call.rules->error(*call.node, gathered);
            } else if constexpr (Pair::kMerged) {
                // The inner step's result is read by the outer alone, so it
                // goes to no slot; the left operand's error is in its slot.
                using Inner = typename Pair::Inner;
                const typename Inner::Operands inner(numbers, errors, instruction.operands, 2, false,
                                                     instruction.leaves, instruction.assumedErrors, previous);
                const double innerNumber = Inner::number(inner);
                if constexpr (errorWork == Errors::Check && Inner::kConfirms) {
                    const typename Inner::Operands checked(numbers, instruction.operands, 2, instruction.leaves,
                                                           instruction.assumedErrors, previous);
                    if (Inner::error(checked) != ErrNone) assumptionHolds = false;
                }
                std::uint32_t innerError = ErrNone;
                if constexpr (computeErrors) innerError = Inner::error(inner);
                // The outer step's operands: the inner step's result and a
                // third leaf, or the previous result and the inner step's.
                using Outer = numbers::RulesOf<Pair::kOuter, const StackOperands>;
                double outerNumbers[2];
                std::uint32_t outerErrors[2];
                if constexpr (Pair::kInnerOnLeft) {
                    outerNumbers[0] = innerNumber;
                    outerNumbers[1] = *instruction.leaves[2];
                    outerErrors[0] = innerError;
                    outerErrors[1] = instruction.assumedErrors[2];
                } else {
                    outerNumbers[0] = previous;
                    outerNumbers[1] = innerNumber;
                    outerErrors[0] = computeErrors ? errors[instruction.operands[0]] : ErrNone;
                    outerErrors[1] = innerError;
                }
                const StackOperands outer(outerNumbers, outerErrors, 2, false);
                number = Outer::number(outer);
                if constexpr (computeErrors) error = Outer::error(outer);
            } else {
                using Operands = typename Pair::Operands;
                // An operation with leaves read in place is never a range's.
                const bool list = Pair::list && !Operands::kFixedCount && instruction.list;
                const std::uint32_t* slots = instruction.operands;
                const double* const* leaves = instruction.leaves;
                const std::uint32_t* leafErrors = instruction.assumedErrors;
                if constexpr (Operands::kLeafList) {
                    // A range of leaves has no slots; its first operand says where its leaves start.
                    leaves = listLeaves_.data() + instruction.operands[0];
                    leafErrors = listLeafErrors_.data() + instruction.operands[0];
                } else if (list) {
                    slots = lists + instruction.operands[0];
                }
                const Operands operands(numbers, errors, slots, instruction.count, list, leaves, leafErrors,
                                        previous);
                number = Pair::number(operands);
                if constexpr (computeErrors) error = Pair::error(operands);
                if constexpr (errorWork == Errors::Check) {
                    if constexpr (Pair::kConfirms) {
                        const Operands checked(numbers, instruction.operands, instruction.count, instruction.leaves,
                                               instruction.assumedErrors, previous);
                        if (Pair::error(checked) != ErrNone) assumptionHolds = false;
                    }
                }
            }
        });
        numbers[instruction.result] = number;
        if (computeErrors) errors[instruction.result] = error;
        previous = number;
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
    // Slots left unset: each is written before it is read.
    if (slotCount_ > kInlineSlots) return runNumbersOnHeap<errorWork>();
    double numbers[kInlineSlots];
    std::uint32_t errors[kInlineSlots];
    return runNumbers<errorWork>(numbers, errors);
}

// Out of line, so that its allocations leave the common path's loop alone.
template <CompiledFormula::Errors errorWork>
[[gnu::flatten, gnu::noinline]] CompiledFormula::NumberAnswer CompiledFormula::runNumbersOnHeap() const {
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

// The common case of the value runs here, flattened, so that a short formula
// pays for one call and one test.
[[gnu::flatten]] double CompiledFormula::f64Evaluate() const {
    if (!valueInPlace_) return valueOutOfLine();
    double numbers[kInlineSlots];
    std::uint32_t errors[kInlineSlots];
    return runNumbers<Errors::Skip>(numbers, errors).number;
}

}  // namespace cellformula
