#ifndef CELLFORMULA_RULES_H
#define CELLFORMULA_RULES_H

// The vocabulary in which every node class states its rules once: the
// answers of its operands (Operands), what each of its questions asks of
// them (Asks), and its four answers (Rules). The evaluator (program.h) runs
// them for every way of evaluating. Never installed.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "astnode.h"
#include "operation.h"

namespace cellformula {

// The four questions, as bits of a demand.
enum Question : std::uint8_t {
    kType = 1,
    kError = 2,
    kNumber = 4,
    kText = 8,
    // The text, when any operand of the asking node may not be a number.
    kTextIfAnyNotNumber = 16,
};
constexpr std::uint8_t kAllQuestions = kType | kError | kNumber | kText;

// One operand's answers while its parent's rules run. A host's node is
// asked through its public operations when a rule first needs an answer.
struct Slot {
    double number;
    ASTNode* host;
    std::uint32_t error;
    std::uint32_t type;
    std::uint32_t numberRaise;  // 1 + index of the exception its number raises, or 0
    std::uint32_t textRaise;
    std::uint8_t known;  // which answers are there (Question bits)
    bool absent;
};

// A rule met an operand value that raises (BIN2DEC of a non-binary text, RIGHT
// with a negative count): the value is not there, and the reason travels up
// as data, so that classification can answer without throwing.
struct Raise {
    static constexpr std::size_t kOwn = static_cast<std::size_t>(-1);
    std::size_t operand;  // whose value raised, or kOwn
    std::uint32_t index;  // 1 + index into the run's exceptions
};

// Exceptions raised during one run, kept until the run's answer needs one.
using Raises = std::vector<std::exception_ptr>;

// The operands of the node whose rules run: one, a pair, a list, or an IF's
// condition and chosen branch (absent when there is none).
class Operands {
public:
    Operands(const ASTNode* node, Slot* slots, std::string* texts, std::size_t count, bool list, Raises& raises)
        : node_(node), slots_(slots), texts_(texts), count_(count), list_(list), raises_(raises) {}

    template <class Node>
    const Node& self() const {
        return static_cast<const Node&>(*node_);
    }
    std::size_t count() const { return count_; }
    bool isList() const { return list_; }
    bool absent(std::size_t i) const { return slots_[i].absent; }
    bool anyAbsent() const;

    std::uint32_t type(std::size_t i) {
        Slot& slot = slots_[i];
        if (slot.host != nullptr && (slot.known & kType) == 0) askHost(i, kType);
        return slot.type;
    }
    std::uint32_t error(std::size_t i) {
        Slot& slot = slots_[i];
        if (slot.host != nullptr && (slot.known & kError) == 0) askHost(i, kError);
        return slot.error;
    }
    double number(std::size_t i) {
        Slot& slot = slots_[i];
        if (slot.host != nullptr && (slot.known & kNumber) == 0) askHost(i, kNumber);
        if (slot.numberRaise != 0) throw Raise{i, slot.numberRaise};
        return slot.number;
    }
    const std::string& text(std::size_t i) {
        Slot& slot = slots_[i];
        if (slot.host != nullptr && (slot.known & kText) == 0) askHost(i, kText);
        if (slot.textRaise != 0) throw Raise{i, slot.textRaise};
        return texts_[i];
    }
    // The operand's text, moved out: for the last rule that reads it.
    std::string takeText(std::size_t i) {
        text(i);
        return std::move(texts_[i]);
    }

    // Called inside a catch block: the library call that failed raises as
    // this node's value.
    [[noreturn]] void raiseOwn();

private:
    // Asks a host's node through its public operation, once per run.
    void askHost(std::size_t i, Question question);

    const ASTNode* node_;
    Slot* slots_;
    std::string* texts_;
    std::size_t count_;
    bool list_;
    Raises& raises_;
};

// What one question of a node asks of its operands: `first` of the one
// operand, the left one, every list element or IF's condition; `second` of the
// right one or IF's branches.
struct Asks {
    std::uint8_t first = 0;
    std::uint8_t second = 0;
};

enum class Shape : std::uint8_t { Leaf, One, Pair, Condition };
// What a node's value may be, known before any value is read: always a
// number, always a text, a number when its operands are (a sum), or anything
// (IF, whose type follows the value of its condition).
enum class Kind : std::uint8_t { Number, Text, FromOperands, Any };

// A node class's rules. A missing type rule answers ExprNumber, a missing
// error rule ErrNone, a missing number 0.0, and a missing text rule the
// node's own number as sstringify writes it.
struct Rules {
    Shape shape;
    Kind kind;
    Asks asks[4];  // what the type, error, number and text rules ask
    std::uint32_t (*type)(Operands&);
    std::uint32_t (*error)(Operands&);
    double (*number)(Operands&);
    void (*text)(Operands&, std::string&);
};

// Every class's rules, in the order of Operation.
extern const Rules* const kRulesOfOperations[];
inline const Rules& rulesOf(Operation operation) {
    return *kRulesOfOperations[static_cast<std::size_t>(operation)];
}
// The class whose nodes the rules of `operation` answer for directly.
const std::type_info* classOf(Operation operation);

// The error rule most operators share. Both operands' types come before
// either's error in a pair (a wrong type wins over an operand's own error); in
// a list each element's error comes before its type. `wrong` says which types
// the operator refuses.
std::uint32_t operandsError(Operands& operands, bool (*wrong)(std::uint32_t));
bool isNotNumber(std::uint32_t type);
bool hasNoType(std::uint32_t type);
// The one-operand rule: the operand's type, then its error.
std::uint32_t oneOperandError(Operands& operands);

// Asks of the common shapes.
constexpr Asks kNothing{};
constexpr Asks kTypes{kType, kType};
constexpr Asks kTypesErrors{kType | kError, kType | kError};
constexpr Asks kNumbers{kNumber, kNumber};
constexpr Asks kTexts{kText, kText};

}  // namespace cellformula

#endif
