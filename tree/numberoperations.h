#ifndef CELLFORMULA_NUMBEROPERATIONS_H
#define CELLFORMULA_NUMBEROPERATIONS_H

// The operations a compiled number program runs inline, and the one switch
// that hands each its node class's own number and error rule templates.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "arithmeticrules.h"
#include "comparisonrules.h"
#include "logicrules.h"
#include "mathrules.h"
#include "operands.h"

namespace cellformula::numbers {

// The operations the number program runs inline. Each uses the very rule
// templates its class uses, and is chosen only for a node whose stack rules
// are those templates, so a class whose rules change is simply called.
enum class Operation : std::uint8_t {
    Negate, Add, Subtract, Multiply, Divide, Modulo, Power, Greater, Less, GreatEqual, LessEqual, Equal, And, Or, Min,
    Max, Not, IsError, If, Sin, Cos, Tan, Asin, Acos, Atan, Sqrt, Ln, Atan2, Log,
    Call,
    // The operations of two operands again, four codes each: neither operand
    // a leaf (Results), then the left, the right or both leaves read where
    // they live; those of one operand again, with their leaf read in place.
    AddResults, AddLeft, AddRight, AddBoth, SubtractResults, SubtractLeft, SubtractRight, SubtractBoth,
    MultiplyResults, MultiplyLeft, MultiplyRight, MultiplyBoth, DivideResults, DivideLeft, DivideRight, DivideBoth,
    PowerResults, PowerLeft, PowerRight, PowerBoth, GreaterResults, GreaterLeft, GreaterRight, GreaterBoth,
    LessResults, LessLeft, LessRight, LessBoth, ModuloResults, ModuloLeft, ModuloRight, ModuloBoth, GreatEqualResults,
    GreatEqualLeft, GreatEqualRight, GreatEqualBoth, LessEqualResults, LessEqualLeft, LessEqualRight, LessEqualBoth,
    EqualResults, EqualLeft, EqualRight, EqualBoth, Atan2Results, Atan2Left, Atan2Right, Atan2Both, LogResults,
    LogLeft, LogRight, LogBoth, NegateLeaf, NotLeaf, SinLeaf, CosLeaf, TanLeaf, AsinLeaf, AcosLeaf, AtanLeaf,
    SqrtLeaf, LnLeaf, IsErrorLeaf,
    // Those whose error may depend on a value, again, for a step whose error
    // a run must confirm (see assumeErrors).
    DivideChecked, ModuloChecked, PowerChecked, AsinChecked, AcosChecked, SqrtChecked, LnChecked, LogChecked,
    IfChecked, DivideResultsChecked, DivideLeftChecked, DivideRightChecked, DivideBothChecked, PowerResultsChecked,
    PowerLeftChecked, PowerRightChecked, PowerBothChecked, ModuloResultsChecked, ModuloLeftChecked,
    ModuloRightChecked, ModuloBothChecked, LogResultsChecked, LogLeftChecked, LogRightChecked, LogBothChecked,
    AsinLeafChecked, AcosLeafChecked, SqrtLeafChecked, LnLeafChecked,
    // Two steps in one instruction: an operation of two leaves read in place
    // (the inner), whose result is the right operand of the next step, whose
    // left operand is the previous result (the outer). MultiplyIntoAdd runs
    // previous + a * b.
    AddIntoAdd, SubtractIntoAdd, MultiplyIntoAdd, DivideIntoAdd, PowerIntoAdd, AddIntoSubtract, SubtractIntoSubtract,
    MultiplyIntoSubtract, DivideIntoSubtract, PowerIntoSubtract, AddIntoMultiply, SubtractIntoMultiply,
    MultiplyIntoMultiply, DivideIntoMultiply, PowerIntoMultiply, AddIntoDivide, SubtractIntoDivide,
    MultiplyIntoDivide, DivideIntoDivide, PowerIntoDivide,
    // The same with an inner step whose error a run confirms.
    DivideCheckedIntoAdd, PowerCheckedIntoAdd, DivideCheckedIntoSubtract, PowerCheckedIntoSubtract,
    DivideCheckedIntoMultiply, PowerCheckedIntoMultiply, DivideCheckedIntoDivide, PowerCheckedIntoDivide,
    // The operations over a range again, for a range of leaves read where they live.
    AddLeafList, AndLeafList, OrLeafList, MinLeafList, MaxLeafList,
    // Two steps in one instruction the other way round: the inner step's
    // result is the left operand of the next, whose right operand is a third
    // leaf read in place. MultiplyThenAdd runs a * b + c.
    AddThenAdd, SubtractThenAdd, MultiplyThenAdd, DivideThenAdd, PowerThenAdd, AddThenSubtract, SubtractThenSubtract,
    MultiplyThenSubtract, DivideThenSubtract, PowerThenSubtract, AddThenMultiply, SubtractThenMultiply,
    MultiplyThenMultiply, DivideThenMultiply, PowerThenMultiply, AddThenDivide, SubtractThenDivide,
    MultiplyThenDivide, DivideThenDivide, PowerThenDivide, DivideCheckedThenAdd, PowerCheckedThenAdd,
    DivideCheckedThenSubtract, PowerCheckedThenSubtract, DivideCheckedThenMultiply, PowerCheckedThenMultiply,
    DivideCheckedThenDivide, PowerCheckedThenDivide
};

// Each code with a confirmed variant, in the order of the variants.
constexpr Operation kCheckable[] = {
    Operation::Divide, Operation::Modulo, Operation::Power, Operation::Asin, Operation::Acos, Operation::Sqrt,
    Operation::Ln, Operation::Log, Operation::If, Operation::DivideResults, Operation::DivideLeft,
    Operation::DivideRight, Operation::DivideBoth, Operation::PowerResults, Operation::PowerLeft,
    Operation::PowerRight, Operation::PowerBoth, Operation::ModuloResults, Operation::ModuloLeft,
    Operation::ModuloRight, Operation::ModuloBoth, Operation::LogResults, Operation::LogLeft, Operation::LogRight,
    Operation::LogBoth, Operation::AsinLeaf, Operation::AcosLeaf, Operation::SqrtLeaf, Operation::LnLeaf
};

// The operations that merge into one instruction, in the order of their codes:
// each outer operation has one code for each inner one.
constexpr Operation kMergedOuter[] = {Operation::Add, Operation::Subtract, Operation::Multiply, Operation::Divide};
constexpr Operation kMergedInner[] = {Operation::Add, Operation::Subtract, Operation::Multiply, Operation::Divide,
                                      Operation::Power};
constexpr Operation kMergedConfirmedInner[] = {Operation::Divide, Operation::Power};

// The operations over a range whose leaves may be read in place, in the order of their codes.
constexpr Operation kLeafListFusable[] = {Operation::Add, Operation::And, Operation::Or, Operation::Min,
                                          Operation::Max};

// The code of an operation over a range of leaves read in place, or the operation itself.
inline Operation withLeafList(Operation operation) {
    for (std::size_t i = 0; i < sizeof kLeafListFusable / sizeof kLeafListFusable[0]; ++i) {
        if (kLeafListFusable[i] == operation) {
            return static_cast<Operation>(static_cast<unsigned>(Operation::AddLeafList) + i);
        }
    }
    return operation;
}

// The confirmed variant of a code, or Call when it has none.
inline Operation checked(Operation operation) {
    for (std::size_t i = 0; i < sizeof kCheckable / sizeof kCheckable[0]; ++i) {
        if (kCheckable[i] == operation) {
            return static_cast<Operation>(static_cast<unsigned>(Operation::DivideChecked) + i);
        }
    }
    return Operation::Call;
}

// The operations whose codes above say where each operand is read: those of
// two operands (four codes each), then those of one (one code each).
constexpr Operation kTwoOperandFusable[] = {
    Operation::Add, Operation::Subtract, Operation::Multiply, Operation::Divide, Operation::Power, Operation::Greater,
    Operation::Less, Operation::Modulo, Operation::GreatEqual, Operation::LessEqual, Operation::Equal,
    Operation::Atan2, Operation::Log
};
constexpr Operation kOneOperandFusable[] = {
    Operation::Negate, Operation::Not, Operation::Sin, Operation::Cos, Operation::Tan, Operation::Asin,
    Operation::Acos, Operation::Atan, Operation::Sqrt, Operation::Ln, Operation::IsError
};

// The code of an operation for where its operands are read: `leaves` (bit 0
// the left, bit 1 the right) are leaves read in place, and the last operand
// that is not a leaf is the previous instruction's result. A range, and a
// LOG of one operand that is no leaf, keep the operation's own code.
inline Operation withOperands(Operation operation, unsigned leaves, std::size_t count, bool list) {
    if (list) return operation;
    constexpr std::size_t kTwoOperandCount = sizeof kTwoOperandFusable / sizeof kTwoOperandFusable[0];
    const auto first = static_cast<unsigned>(Operation::AddResults);
    for (std::size_t i = 0; i < kTwoOperandCount; ++i) {
        if (kTwoOperandFusable[i] != operation) continue;
        if (count != 2 && leaves == 0) return operation;
        return static_cast<Operation>(first + 4 * i + leaves);
    }
    for (std::size_t i = 0; i < sizeof kOneOperandFusable / sizeof kOneOperandFusable[0]; ++i) {
        if (kOneOperandFusable[i] == operation && leaves == 1) {
            return static_cast<Operation>(first + 4 * kTwoOperandCount + i);
        }
    }
    return operation;
}

// The code of an inner step of two leaves merged into the outer step that
// reads it, from the codes each has on its own; Call when they do not merge
// (an outer step whose error a run confirms keeps its own instruction). The
// outer takes the previous result on its left and the inner's on its right,
// or the inner's on its left and a leaf on its right.
inline Operation merged(Operation innerCode, Operation outerCode) {
    constexpr std::size_t kInnerCount = sizeof kMergedInner / sizeof kMergedInner[0];
    constexpr std::size_t kConfirmedCount = sizeof kMergedConfirmedInner / sizeof kMergedConfirmedInner[0];
    for (std::size_t o = 0; o < sizeof kMergedOuter / sizeof kMergedOuter[0]; ++o) {
        // The inner step on the outer's right (Into), or on its left before a leaf (Then).
        const bool into = withOperands(kMergedOuter[o], 0, 2, false) == outerCode;
        const bool then = withOperands(kMergedOuter[o], 2, 2, false) == outerCode;
        if (!into && !then) continue;
        const auto plain = static_cast<unsigned>(into ? Operation::AddIntoAdd : Operation::AddThenAdd);
        const auto confirmed =
            static_cast<unsigned>(into ? Operation::DivideCheckedIntoAdd : Operation::DivideCheckedThenAdd);
        for (std::size_t i = 0; i < kInnerCount; ++i) {
            if (withOperands(kMergedInner[i], 3, 2, false) != innerCode) continue;
            return static_cast<Operation>(plain + o * kInnerCount + i);
        }
        for (std::size_t i = 0; i < kConfirmedCount; ++i) {
            if (checked(withOperands(kMergedConfirmedInner[i], 3, 2, false)) != innerCode) continue;
            return static_cast<Operation>(confirmed + o * kConfirmedCount + i);
        }
    }
    return Operation::Call;
}

// Whether a merged code puts the inner step on the outer's left.
inline bool innerOnLeft(Operation mergedCode) {
    return mergedCode >= Operation::AddThenAdd;
}

// An operation of one or two operands, whose leaves are read in place.
inline bool isFusable(Operation operation) {
    for (const Operation fusable : kTwoOperandFusable) {
        if (fusable == operation) return true;
    }
    for (const Operation fusable : kOneOperandFusable) {
        if (fusable == operation) return true;
    }
    return false;
}

// The rule templates are named as their own files name them.
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
    static constexpr bool kMerged = false;
};

// The two steps of a merged instruction: the inner over its two leaves, and
// the outer operation, whose rules run over the previous result and the
// inner's, or over the inner's and a third leaf.
template <Operation outer, Operation inner, template <unsigned> class OperandsOf, bool innerConfirms = false,
          bool onLeft = false>
struct Merged {
    using Inner = Choice<inner, OperandsOf<3>, innerConfirms>;
    static constexpr Operation kOuter = outer;
    static constexpr bool kMerged = true;
    static constexpr bool kInnerOnLeft = onLeft;  // the outer's right operand is a third leaf
};

// What the switch below hands `visit` for an instruction that calls its node's
// own rules out of line.
struct Called {};

template <typename Pair>
constexpr bool kCalls = std::is_same_v<Pair, Called>;

// Hands `visit` the number and error rule of an inline operation, over the
// operands `OperandsOf<shape>` for where it reads them (see SlotOperands);
// Called and false for a call. One switch for all, so that running an instruction takes one jump.
template <template <unsigned> class OperandsOf, typename Visit>
[[gnu::always_inline]] inline bool withRules(Operation operation, Visit&& visit) {
    switch (operation) {
        case Operation::Negate: return visit(Choice<Operation::Negate, OperandsOf<4>>{}), true;
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
        case Operation::Not: return visit(Choice<Operation::Not, OperandsOf<4>>{}), true;
        case Operation::IsError: return visit(Choice<Operation::IsError, OperandsOf<4>>{}), true;
        case Operation::If: return visit(Choice<Operation::If, OperandsOf<0>>{}), true;
        case Operation::Sin: return visit(Choice<Operation::Sin, OperandsOf<4>>{}), true;
        case Operation::Cos: return visit(Choice<Operation::Cos, OperandsOf<4>>{}), true;
        case Operation::Tan: return visit(Choice<Operation::Tan, OperandsOf<4>>{}), true;
        case Operation::Asin: return visit(Choice<Operation::Asin, OperandsOf<4>>{}), true;
        case Operation::Acos: return visit(Choice<Operation::Acos, OperandsOf<4>>{}), true;
        case Operation::Atan: return visit(Choice<Operation::Atan, OperandsOf<4>>{}), true;
        case Operation::Sqrt: return visit(Choice<Operation::Sqrt, OperandsOf<4>>{}), true;
        case Operation::Ln: return visit(Choice<Operation::Ln, OperandsOf<4>>{}), true;
        case Operation::Atan2: return visit(Choice<Operation::Atan2, OperandsOf<0>>{}), true;
        case Operation::Log: return visit(Choice<Operation::Log, OperandsOf<0>>{}), true;
        case Operation::Call: return visit(Called{}), false;
        case Operation::AddResults: return visit(Choice<Operation::Add, OperandsOf<8>>{}), true;
        case Operation::AddLeft: return visit(Choice<Operation::Add, OperandsOf<9>>{}), true;
        case Operation::AddRight: return visit(Choice<Operation::Add, OperandsOf<6>>{}), true;
        case Operation::AddBoth: return visit(Choice<Operation::Add, OperandsOf<3>>{}), true;
        case Operation::SubtractResults: return visit(Choice<Operation::Subtract, OperandsOf<8>>{}), true;
        case Operation::SubtractLeft: return visit(Choice<Operation::Subtract, OperandsOf<9>>{}), true;
        case Operation::SubtractRight: return visit(Choice<Operation::Subtract, OperandsOf<6>>{}), true;
        case Operation::SubtractBoth: return visit(Choice<Operation::Subtract, OperandsOf<3>>{}), true;
        case Operation::MultiplyResults: return visit(Choice<Operation::Multiply, OperandsOf<8>>{}), true;
        case Operation::MultiplyLeft: return visit(Choice<Operation::Multiply, OperandsOf<9>>{}), true;
        case Operation::MultiplyRight: return visit(Choice<Operation::Multiply, OperandsOf<6>>{}), true;
        case Operation::MultiplyBoth: return visit(Choice<Operation::Multiply, OperandsOf<3>>{}), true;
        case Operation::DivideResults: return visit(Choice<Operation::Divide, OperandsOf<8>>{}), true;
        case Operation::DivideLeft: return visit(Choice<Operation::Divide, OperandsOf<9>>{}), true;
        case Operation::DivideRight: return visit(Choice<Operation::Divide, OperandsOf<6>>{}), true;
        case Operation::DivideBoth: return visit(Choice<Operation::Divide, OperandsOf<3>>{}), true;
        case Operation::PowerResults: return visit(Choice<Operation::Power, OperandsOf<8>>{}), true;
        case Operation::PowerLeft: return visit(Choice<Operation::Power, OperandsOf<9>>{}), true;
        case Operation::PowerRight: return visit(Choice<Operation::Power, OperandsOf<6>>{}), true;
        case Operation::PowerBoth: return visit(Choice<Operation::Power, OperandsOf<3>>{}), true;
        case Operation::GreaterResults: return visit(Choice<Operation::Greater, OperandsOf<8>>{}), true;
        case Operation::GreaterLeft: return visit(Choice<Operation::Greater, OperandsOf<9>>{}), true;
        case Operation::GreaterRight: return visit(Choice<Operation::Greater, OperandsOf<6>>{}), true;
        case Operation::GreaterBoth: return visit(Choice<Operation::Greater, OperandsOf<3>>{}), true;
        case Operation::LessResults: return visit(Choice<Operation::Less, OperandsOf<8>>{}), true;
        case Operation::LessLeft: return visit(Choice<Operation::Less, OperandsOf<9>>{}), true;
        case Operation::LessRight: return visit(Choice<Operation::Less, OperandsOf<6>>{}), true;
        case Operation::LessBoth: return visit(Choice<Operation::Less, OperandsOf<3>>{}), true;
        case Operation::ModuloResults: return visit(Choice<Operation::Modulo, OperandsOf<8>>{}), true;
        case Operation::ModuloLeft: return visit(Choice<Operation::Modulo, OperandsOf<9>>{}), true;
        case Operation::ModuloRight: return visit(Choice<Operation::Modulo, OperandsOf<6>>{}), true;
        case Operation::ModuloBoth: return visit(Choice<Operation::Modulo, OperandsOf<3>>{}), true;
        case Operation::GreatEqualResults: return visit(Choice<Operation::GreatEqual, OperandsOf<8>>{}), true;
        case Operation::GreatEqualLeft: return visit(Choice<Operation::GreatEqual, OperandsOf<9>>{}), true;
        case Operation::GreatEqualRight: return visit(Choice<Operation::GreatEqual, OperandsOf<6>>{}), true;
        case Operation::GreatEqualBoth: return visit(Choice<Operation::GreatEqual, OperandsOf<3>>{}), true;
        case Operation::LessEqualResults: return visit(Choice<Operation::LessEqual, OperandsOf<8>>{}), true;
        case Operation::LessEqualLeft: return visit(Choice<Operation::LessEqual, OperandsOf<9>>{}), true;
        case Operation::LessEqualRight: return visit(Choice<Operation::LessEqual, OperandsOf<6>>{}), true;
        case Operation::LessEqualBoth: return visit(Choice<Operation::LessEqual, OperandsOf<3>>{}), true;
        case Operation::EqualResults: return visit(Choice<Operation::Equal, OperandsOf<8>>{}), true;
        case Operation::EqualLeft: return visit(Choice<Operation::Equal, OperandsOf<9>>{}), true;
        case Operation::EqualRight: return visit(Choice<Operation::Equal, OperandsOf<6>>{}), true;
        case Operation::EqualBoth: return visit(Choice<Operation::Equal, OperandsOf<3>>{}), true;
        case Operation::Atan2Results: return visit(Choice<Operation::Atan2, OperandsOf<8>>{}), true;
        case Operation::Atan2Left: return visit(Choice<Operation::Atan2, OperandsOf<9>>{}), true;
        case Operation::Atan2Right: return visit(Choice<Operation::Atan2, OperandsOf<6>>{}), true;
        case Operation::Atan2Both: return visit(Choice<Operation::Atan2, OperandsOf<3>>{}), true;
        case Operation::LogResults: return visit(Choice<Operation::Log, OperandsOf<8>>{}), true;
        case Operation::LogLeft: return visit(Choice<Operation::Log, OperandsOf<9>>{}), true;
        case Operation::LogRight: return visit(Choice<Operation::Log, OperandsOf<6>>{}), true;
        case Operation::LogBoth: return visit(Choice<Operation::Log, OperandsOf<3>>{}), true;
        case Operation::NegateLeaf: return visit(Choice<Operation::Negate, OperandsOf<1>>{}), true;
        case Operation::NotLeaf: return visit(Choice<Operation::Not, OperandsOf<1>>{}), true;
        case Operation::SinLeaf: return visit(Choice<Operation::Sin, OperandsOf<1>>{}), true;
        case Operation::CosLeaf: return visit(Choice<Operation::Cos, OperandsOf<1>>{}), true;
        case Operation::TanLeaf: return visit(Choice<Operation::Tan, OperandsOf<1>>{}), true;
        case Operation::AsinLeaf: return visit(Choice<Operation::Asin, OperandsOf<1>>{}), true;
        case Operation::AcosLeaf: return visit(Choice<Operation::Acos, OperandsOf<1>>{}), true;
        case Operation::AtanLeaf: return visit(Choice<Operation::Atan, OperandsOf<1>>{}), true;
        case Operation::SqrtLeaf: return visit(Choice<Operation::Sqrt, OperandsOf<1>>{}), true;
        case Operation::LnLeaf: return visit(Choice<Operation::Ln, OperandsOf<1>>{}), true;
        case Operation::IsErrorLeaf: return visit(Choice<Operation::IsError, OperandsOf<1>>{}), true;
        case Operation::DivideChecked: return visit(Choice<Operation::Divide, OperandsOf<0>, true>{}), true;
        case Operation::ModuloChecked: return visit(Choice<Operation::Modulo, OperandsOf<0>, true>{}), true;
        case Operation::PowerChecked: return visit(Choice<Operation::Power, OperandsOf<0>, true>{}), true;
        case Operation::AsinChecked: return visit(Choice<Operation::Asin, OperandsOf<4>, true>{}), true;
        case Operation::AcosChecked: return visit(Choice<Operation::Acos, OperandsOf<4>, true>{}), true;
        case Operation::SqrtChecked: return visit(Choice<Operation::Sqrt, OperandsOf<4>, true>{}), true;
        case Operation::LnChecked: return visit(Choice<Operation::Ln, OperandsOf<4>, true>{}), true;
        case Operation::LogChecked: return visit(Choice<Operation::Log, OperandsOf<0>, true>{}), true;
        case Operation::IfChecked: return visit(Choice<Operation::If, OperandsOf<0>, true>{}), true;
        case Operation::DivideResultsChecked: return visit(Choice<Operation::Divide, OperandsOf<8>, true>{}), true;
        case Operation::DivideLeftChecked: return visit(Choice<Operation::Divide, OperandsOf<9>, true>{}), true;
        case Operation::DivideRightChecked: return visit(Choice<Operation::Divide, OperandsOf<6>, true>{}), true;
        case Operation::DivideBothChecked: return visit(Choice<Operation::Divide, OperandsOf<3>, true>{}), true;
        case Operation::PowerResultsChecked: return visit(Choice<Operation::Power, OperandsOf<8>, true>{}), true;
        case Operation::PowerLeftChecked: return visit(Choice<Operation::Power, OperandsOf<9>, true>{}), true;
        case Operation::PowerRightChecked: return visit(Choice<Operation::Power, OperandsOf<6>, true>{}), true;
        case Operation::PowerBothChecked: return visit(Choice<Operation::Power, OperandsOf<3>, true>{}), true;
        case Operation::ModuloResultsChecked: return visit(Choice<Operation::Modulo, OperandsOf<8>, true>{}), true;
        case Operation::ModuloLeftChecked: return visit(Choice<Operation::Modulo, OperandsOf<9>, true>{}), true;
        case Operation::ModuloRightChecked: return visit(Choice<Operation::Modulo, OperandsOf<6>, true>{}), true;
        case Operation::ModuloBothChecked: return visit(Choice<Operation::Modulo, OperandsOf<3>, true>{}), true;
        case Operation::LogResultsChecked: return visit(Choice<Operation::Log, OperandsOf<8>, true>{}), true;
        case Operation::LogLeftChecked: return visit(Choice<Operation::Log, OperandsOf<9>, true>{}), true;
        case Operation::LogRightChecked: return visit(Choice<Operation::Log, OperandsOf<6>, true>{}), true;
        case Operation::LogBothChecked: return visit(Choice<Operation::Log, OperandsOf<3>, true>{}), true;
        case Operation::AsinLeafChecked: return visit(Choice<Operation::Asin, OperandsOf<1>, true>{}), true;
        case Operation::AcosLeafChecked: return visit(Choice<Operation::Acos, OperandsOf<1>, true>{}), true;
        case Operation::SqrtLeafChecked: return visit(Choice<Operation::Sqrt, OperandsOf<1>, true>{}), true;
        case Operation::LnLeafChecked: return visit(Choice<Operation::Ln, OperandsOf<1>, true>{}), true;
        case Operation::AddIntoAdd:
            return visit(Merged<Operation::Add, Operation::Add, OperandsOf>{}), true;
        case Operation::SubtractIntoAdd:
            return visit(Merged<Operation::Add, Operation::Subtract, OperandsOf>{}), true;
        case Operation::MultiplyIntoAdd:
            return visit(Merged<Operation::Add, Operation::Multiply, OperandsOf>{}), true;
        case Operation::DivideIntoAdd:
            return visit(Merged<Operation::Add, Operation::Divide, OperandsOf>{}), true;
        case Operation::PowerIntoAdd:
            return visit(Merged<Operation::Add, Operation::Power, OperandsOf>{}), true;
        case Operation::AddIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Add, OperandsOf>{}), true;
        case Operation::SubtractIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Subtract, OperandsOf>{}), true;
        case Operation::MultiplyIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Multiply, OperandsOf>{}), true;
        case Operation::DivideIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Divide, OperandsOf>{}), true;
        case Operation::PowerIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Power, OperandsOf>{}), true;
        case Operation::AddIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Add, OperandsOf>{}), true;
        case Operation::SubtractIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Subtract, OperandsOf>{}), true;
        case Operation::MultiplyIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Multiply, OperandsOf>{}), true;
        case Operation::DivideIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Divide, OperandsOf>{}), true;
        case Operation::PowerIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Power, OperandsOf>{}), true;
        case Operation::AddIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Add, OperandsOf>{}), true;
        case Operation::SubtractIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Subtract, OperandsOf>{}), true;
        case Operation::MultiplyIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Multiply, OperandsOf>{}), true;
        case Operation::DivideIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Divide, OperandsOf>{}), true;
        case Operation::PowerIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Power, OperandsOf>{}), true;
        case Operation::DivideCheckedIntoAdd:
            return visit(Merged<Operation::Add, Operation::Divide, OperandsOf, true>{}), true;
        case Operation::PowerCheckedIntoAdd:
            return visit(Merged<Operation::Add, Operation::Power, OperandsOf, true>{}), true;
        case Operation::DivideCheckedIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Divide, OperandsOf, true>{}), true;
        case Operation::PowerCheckedIntoSubtract:
            return visit(Merged<Operation::Subtract, Operation::Power, OperandsOf, true>{}), true;
        case Operation::DivideCheckedIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Divide, OperandsOf, true>{}), true;
        case Operation::PowerCheckedIntoMultiply:
            return visit(Merged<Operation::Multiply, Operation::Power, OperandsOf, true>{}), true;
        case Operation::DivideCheckedIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Divide, OperandsOf, true>{}), true;
        case Operation::PowerCheckedIntoDivide:
            return visit(Merged<Operation::Divide, Operation::Power, OperandsOf, true>{}), true;
        case Operation::AddLeafList: return visit(Choice<Operation::Add, OperandsOf<16>>{}), true;
        case Operation::AndLeafList: return visit(Choice<Operation::And, OperandsOf<16>>{}), true;
        case Operation::OrLeafList: return visit(Choice<Operation::Or, OperandsOf<16>>{}), true;
        case Operation::MinLeafList: return visit(Choice<Operation::Min, OperandsOf<16>>{}), true;
        case Operation::MaxLeafList: return visit(Choice<Operation::Max, OperandsOf<16>>{}), true;
        case Operation::AddThenAdd:
            return visit(Merged<Operation::Add, Operation::Add, OperandsOf, false, true>{}), true;
        case Operation::SubtractThenAdd:
            return visit(Merged<Operation::Add, Operation::Subtract, OperandsOf, false, true>{}), true;
        case Operation::MultiplyThenAdd:
            return visit(Merged<Operation::Add, Operation::Multiply, OperandsOf, false, true>{}), true;
        case Operation::DivideThenAdd:
            return visit(Merged<Operation::Add, Operation::Divide, OperandsOf, false, true>{}), true;
        case Operation::PowerThenAdd:
            return visit(Merged<Operation::Add, Operation::Power, OperandsOf, false, true>{}), true;
        case Operation::AddThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Add, OperandsOf, false, true>{}), true;
        case Operation::SubtractThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Subtract, OperandsOf, false, true>{}), true;
        case Operation::MultiplyThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Multiply, OperandsOf, false, true>{}), true;
        case Operation::DivideThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Divide, OperandsOf, false, true>{}), true;
        case Operation::PowerThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Power, OperandsOf, false, true>{}), true;
        case Operation::AddThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Add, OperandsOf, false, true>{}), true;
        case Operation::SubtractThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Subtract, OperandsOf, false, true>{}), true;
        case Operation::MultiplyThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Multiply, OperandsOf, false, true>{}), true;
        case Operation::DivideThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Divide, OperandsOf, false, true>{}), true;
        case Operation::PowerThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Power, OperandsOf, false, true>{}), true;
        case Operation::AddThenDivide:
            return visit(Merged<Operation::Divide, Operation::Add, OperandsOf, false, true>{}), true;
        case Operation::SubtractThenDivide:
            return visit(Merged<Operation::Divide, Operation::Subtract, OperandsOf, false, true>{}), true;
        case Operation::MultiplyThenDivide:
            return visit(Merged<Operation::Divide, Operation::Multiply, OperandsOf, false, true>{}), true;
        case Operation::DivideThenDivide:
            return visit(Merged<Operation::Divide, Operation::Divide, OperandsOf, false, true>{}), true;
        case Operation::PowerThenDivide:
            return visit(Merged<Operation::Divide, Operation::Power, OperandsOf, false, true>{}), true;
        case Operation::DivideCheckedThenAdd:
            return visit(Merged<Operation::Add, Operation::Divide, OperandsOf, true, true>{}), true;
        case Operation::PowerCheckedThenAdd:
            return visit(Merged<Operation::Add, Operation::Power, OperandsOf, true, true>{}), true;
        case Operation::DivideCheckedThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Divide, OperandsOf, true, true>{}), true;
        case Operation::PowerCheckedThenSubtract:
            return visit(Merged<Operation::Subtract, Operation::Power, OperandsOf, true, true>{}), true;
        case Operation::DivideCheckedThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Divide, OperandsOf, true, true>{}), true;
        case Operation::PowerCheckedThenMultiply:
            return visit(Merged<Operation::Multiply, Operation::Power, OperandsOf, true, true>{}), true;
        case Operation::DivideCheckedThenDivide:
            return visit(Merged<Operation::Divide, Operation::Divide, OperandsOf, true, true>{}), true;
        case Operation::PowerCheckedThenDivide:
            return visit(Merged<Operation::Divide, Operation::Power, OperandsOf, true, true>{}), true;
        // Every code a program holds is one of the above: the jump needs no range test.
        default: __builtin_unreachable();
    }
    return false;
}

template <unsigned>
using OnStack = const StackOperands;

// The inline operation whose rules a node's stack rules are, or a call.
inline Operation operationOf(const StackRules& stackRules) {
    for (auto candidate = static_cast<std::uint8_t>(Operation::Negate);
         candidate < static_cast<std::uint8_t>(Operation::Call); ++candidate) {
        bool same = false;
        withRules<OnStack>(static_cast<Operation>(candidate), [&](auto pair) {
            using Pair = decltype(pair);
            if constexpr (!kCalls<Pair>) {
                if constexpr (!Pair::kMerged) {
                    same = stackRules.number == &numberOnStack<Pair::number> &&
                           stackRules.error == &errorOnStack<Pair::error>;
                }
            }
        });
        if (same) return static_cast<Operation>(candidate);
    }
    return Operation::Call;
}

}  // namespace cellformula::numbers

#endif
