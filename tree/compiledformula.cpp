#include "compiledformula.h"

#include <algorithm>
#include <cstddef>
#include <memory>
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
    Call
};

template <auto numberRule, auto errorRule, bool takesList = false>
struct RulePair {
    static constexpr auto number = numberRule;
    static constexpr auto error = errorRule;
    static constexpr bool list = takesList;  // a range's node has its operands in a list
};

// Hands `visit` the number and error rule of an inline operation, over the
// given kind of operands; false for a call.
template <typename Operands, typename Visit>
[[gnu::always_inline]] inline bool withRules(Operation operation, Visit&& visit) {
    using namespace rules;
    switch (operation) {
        case Operation::Negate: return visit(RulePair<&negated<Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::Add: return visit(RulePair<&sum<Operands>, &sumError<Operands>, true>{}), true;
        case Operation::Subtract:
            return visit(RulePair<&difference<Operands>, &operandsError<isNotNumber, Operands>>{}), true;
        case Operation::Multiply:
            return visit(RulePair<&product<Operands>, &operandsError<isNotNumber, Operands>>{}), true;
        case Operation::Divide: return visit(RulePair<&quotient<Operands>, &divisorError<Operands>>{}), true;
        case Operation::Modulo: return visit(RulePair<&rules::remainder<Operands>, &divisorError<Operands>>{}), true;
        case Operation::Power: return visit(RulePair<&power<Operands>, &powerError<Operands>>{}), true;
        case Operation::Greater:
            return visit(RulePair<&compare<Relation::Greater, Operands>, &comparisonError<Operands>>{}), true;
        case Operation::Less: return visit(RulePair<&compare<Relation::Less, Operands>, &comparisonError<Operands>>{}), true;
        case Operation::GreatEqual:
            return visit(RulePair<&compare<Relation::GreatEqual, Operands>, &comparisonError<Operands>>{}), true;
        case Operation::LessEqual:
            return visit(RulePair<&compare<Relation::LessEqual, Operands>, &comparisonError<Operands>>{}), true;
        case Operation::Equal:
            return visit(RulePair<&compare<Relation::Equal, Operands>, &comparisonError<Operands>>{}), true;
        case Operation::And:
            return visit(RulePair<&connect<false, Operands>, &operandsError<isNotNumber, Operands>, true>{}), true;
        case Operation::Or: return visit(RulePair<&connect<true, Operands>, &operandsError<isNotNumber, Operands>, true>{}), true;
        case Operation::Min:
            return visit(RulePair<&reduce<smaller, Operands>, &operandsError<isNotNumber, Operands>, true>{}), true;
        case Operation::Max:
            return visit(RulePair<&reduce<larger, Operands>, &operandsError<isNotNumber, Operands>, true>{}), true;
        case Operation::Not: return visit(RulePair<&negation<Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::IsError: return visit(RulePair<&anyError<Operands>, &unmaskedError<Operands>>{}), true;
        case Operation::If: return visit(RulePair<&choice<Operands>, &choiceError<Operands>>{}), true;
        case Operation::Sin: return visit(RulePair<&applied<sine, Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::Cos: return visit(RulePair<&applied<cosine, Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::Tan: return visit(RulePair<&applied<tangent, Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::Asin:
            return visit(RulePair<&applied<arcSine, Operands>, &domainError<withinUnitRange, Operands>>{}), true;
        case Operation::Acos:
            return visit(RulePair<&applied<arcCosine, Operands>, &domainError<withinUnitRange, Operands>>{}), true;
        case Operation::Atan: return visit(RulePair<&applied<arcTangent, Operands>, &oneOperandError<Operands>>{}), true;
        case Operation::Sqrt:
            return visit(RulePair<&applied<squareRoot, Operands>, &domainError<notNegative, Operands>>{}), true;
        case Operation::Ln:
            return visit(RulePair<&applied<naturalLogarithm, Operands>, &domainError<positive, Operands>>{}), true;
        case Operation::Atan2: return visit(RulePair<&angle<Operands>, &operandsError<isNotNumber, Operands>>{}), true;
        case Operation::Log: return visit(RulePair<&logarithm<Operands>, &logarithmError<Operands>>{}), true;
        case Operation::Call: return false;
    }
    return false;
}

// The inline operation whose rules a node's stack rules are, or a call.
Operation operationOf(const StackRules& stackRules) {
    for (auto candidate = static_cast<std::uint8_t>(Operation::Negate);
         candidate < static_cast<std::uint8_t>(Operation::Call); ++candidate) {
        bool same = false;
        withRules<const StackOperands>(static_cast<Operation>(candidate), [&](auto pair) {
            using Pair = decltype(pair);
            same = stackRules.number == &numberOnStack<Pair::number> && stackRules.error == &errorOnStack<Pair::error>;
        });
        if (same) return static_cast<Operation>(candidate);
    }
    return Operation::Call;
}

// An instruction's operands, read from the slots the leaves and the earlier
// instructions filled; all of them are numbers. Their errors are read from
// the slots too, or, to confirm what compiling assumed, from its list.
class SlotOperands {
public:
    SlotOperands(const double* numbers, const std::uint32_t* errors, const std::uint32_t* slots, std::size_t count,
                 bool list)
        : numbers_(numbers), errors_(errors), slots_(slots), errorSlots_(slots), count_(count), list_(list) {}
    SlotOperands(const double* numbers, const std::uint32_t* slots, const std::uint32_t* assumedErrors,
                 std::size_t count)
        : numbers_(numbers), errors_(assumedErrors), slots_(slots), errorSlots_(kInOrder), count_(count),
          list_(false) {}

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) const { return numbers_[slots_[i]]; }
    double condition(std::size_t i) const { return numbers_[slots_[i]]; }
    std::string text(std::size_t) const { return std::string(); }
    std::uint32_t type(std::size_t) const { return ExprNumber; }
    std::uint32_t error(std::size_t i) const { return errors_[errorSlots_[i]]; }

private:
    static constexpr std::uint32_t kInOrder[3] = {0, 1, 2};

    const double* numbers_;
    const std::uint32_t* errors_;
    const std::uint32_t* slots_;
    const std::uint32_t* errorSlots_;
    std::size_t count_;
    bool list_;
};

// Operands as compiling knows them: each one's assumed error, and the value
// of a constant; a rule that asks for any other value notes it, since its
// answer then depends on the evaluation.
class AssumedOperands {
public:
    AssumedOperands(const std::uint32_t* errors, const double* constants, const bool* constant, std::size_t count,
                    bool list)
        : errors_(errors), constants_(constants), constant_(constant), count_(count), list_(list) {}

    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool present(std::size_t) const { return true; }
    double number(std::size_t i) {
        if (!constant_[i]) readsValue_ = true;
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
    const bool* constant_;
    std::size_t count_;
    bool list_;
    bool readsValue_ = false;
};

bool isConstant(const ASTNode& node) {
    return typeid(node) == typeid(CNConstant) || typeid(node) == typeid(CNPi);
}

}  // namespace

void CompiledFormula::compileNumbers() {
    std::size_t leafCount = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        const StackRules* stackRules = step.node->stackRules();
        if (stackRules == nullptr || typeid(*step.node) != *stackRules->owner) return;
        if (!hasEveryOperand(*step.node, step.operandCount)) return;
        if (stackRules->source != nullptr) ++leafCount;
    }
    // Slots: the leaves, then the results still waiting for the instruction
    // that reads them (a stack), then room to copy a call's operands.
    std::vector<std::uint32_t> slotOf(steps_.size());
    std::size_t depth = 0;
    std::size_t resultRoom = 0;
    std::size_t gatherRoom = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        const StackRules* stackRules = step.node->stackRules();
        const StackOperands none(nullptr, nullptr, 0, false);
        if (stackRules->source != nullptr) {
            slotOf[index] = static_cast<std::uint32_t>(leafSources_.size());
            leafSources_.push_back(stackRules->source(*step.node));
            leafErrors_.push_back(stackRules->error(*step.node, none));
            continue;
        }
        const Operation operation = operationOf(*stackRules);
        Instruction instruction{static_cast<std::uint8_t>(operation), isList(*step.node), false, step.operandCount,
                                {0, 0, 0}, 0, {ErrNone, ErrNone, ErrNone}};
        // Only a range has more than three operands.
        const bool spread = instruction.list;
        if (spread) instruction.operands[0] = static_cast<std::uint32_t>(listSlots_.size());
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
            const std::uint32_t operandStep = operands_[step.firstOperand + i];
            if (spread) {
                listSlots_.push_back(slotOf[operandStep]);
            } else {
                instruction.operands[i] = slotOf[operandStep];
            }
            if (slotOf[operandStep] >= leafCount) --depth;
        }
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
    rootSlot_ = slotOf.back();
    numbersOnly_ = true;
    assumeErrors();
}

// Works out every step's error on the assumption that no step whose error
// depends on a value meets one; a run then only checks those steps.
void CompiledFormula::assumeErrors() {
    std::vector<std::uint32_t> assumed(steps_.size(), ErrNone);
    std::vector<double> value(steps_.size(), 0.0);
    std::vector<bool> constant(steps_.size(), false);
    std::vector<std::uint32_t> errors;
    std::vector<double> constants;
    std::unique_ptr<bool[]> constantFlags;
    std::size_t instruction = 0;
    std::size_t leaf = 0;
    for (std::size_t index = 0; index < steps_.size(); ++index) {
        const Step& step = steps_[index];
        if (step.node->stackRules()->source != nullptr) {
            assumed[index] = leafErrors_[leaf];
            constant[index] = isConstant(*step.node);
            value[index] = *leafSources_[leaf];
            ++leaf;
            continue;
        }
        Instruction& compiled = instructions_[instruction++];
        errors.clear();
        constants.clear();
        constantFlags.reset(new bool[step.operandCount]);
        for (std::uint32_t i = 0; i < step.operandCount; ++i) {
            const std::uint32_t operandStep = operands_[step.firstOperand + i];
            errors.push_back(assumed[operandStep]);
            constants.push_back(value[operandStep]);
            constantFlags[i] = constant[operandStep];
        }
        AssumedOperands operands(errors.data(), constants.data(), constantFlags.get(), step.operandCount, compiled.list);
        bool known = false;
        withRules<AssumedOperands>(static_cast<Operation>(compiled.operation), [&](auto pair) {
            using Pair = decltype(pair);
            const std::uint32_t error = Pair::error(operands);
            if (operands.readsValue()) return;
            assumed[index] = error;
            known = true;
        });
        if (known) continue;
        // A called rule is never checked: a program with one works out every
        // error. The others are checked against no error.
        compiled.checksError = !compiled.list && step.operandCount <= 3;
        for (std::uint32_t i = 0; i < step.operandCount && compiled.checksError; ++i) compiled.assumedErrors[i] = errors[i];
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
        const bool ranInline = withRules<const SlotOperands>(static_cast<Operation>(instruction.operation), [&](auto pair) {
            using Pair = decltype(pair);
            const bool list = Pair::list && instruction.list;
            const SlotOperands operands(numbers, errors, list ? lists + instruction.operands[0] : instruction.operands,
                                        instruction.count, list);
            number = Pair::number(operands);
            if constexpr (computeErrors) error = Pair::error(operands);
            if constexpr (errorWork == Errors::Check) {
                if (instruction.checksError) {
                    const SlotOperands checked(numbers, instruction.operands, instruction.assumedErrors,
                                               instruction.count);
                    if (Pair::error(checked) != ErrNone) assumptionHolds = false;
                }
            }
        });
        if (!ranInline) {
            const SlotOperands operands(numbers, errors,
                                        instruction.list ? lists + instruction.operands[0] : instruction.operands,
                                        instruction.count, instruction.list);
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

template <CompiledFormula::Errors errorWork>
CompiledFormula::NumberAnswer CompiledFormula::runNumbersInPlace() const {
    // Most formulas fit slots in place, left unset: each is written before
    // it is read. A long formula gets its own.
    constexpr std::size_t kInlineSlots = 64;
    if (slotCount_ > kInlineSlots) return runNumbersOnHeap<errorWork>();
    double numbers[kInlineSlots];
    std::uint32_t errors[kInlineSlots];
    return runNumbers<errorWork>(numbers, errors);
}

template <CompiledFormula::Errors errorWork>
CompiledFormula::NumberAnswer CompiledFormula::runNumbersOnHeap() const {
    std::vector<double> numbers(slotCount_);
    std::vector<std::uint32_t> errors(slotCount_);
    return runNumbers<errorWork>(numbers.data(), errors.data());
}

CompiledFormula::NumberAnswer CompiledFormula::runNumbers(Errors errors) const {
    // ISERROR reads errors for its value, and a called rule may: then every
    // error is worked out.
    if (valueNeedsErrors_) return runNumbersInPlace<Errors::Compute>();
    if (errors == Errors::Skip) return runNumbersInPlace<Errors::Skip>();
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
