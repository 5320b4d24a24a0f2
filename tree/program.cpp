#include "program.h"

#include <typeinfo>

#include "logic.h"
#include "variable.h"

namespace cellformula {

namespace {

constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);

bool isLeaf(Operation operation) {
    return operation >= Operation::Host || rulesOf(operation).shape == Shape::Leaf;
}

std::uint8_t leafFlags(const ASTNode* node, Operation operation) {
    switch (operation) {
        case Operation::Constant:
        case Operation::Pi:
            return 0;
        case Operation::Variable:
            return static_cast<const CNVariable*>(node)->oRecord.u32Type == ExprNumber ? 0 : kMayNotBeNumber;
        default:
            return kMayNotBeNumber;
    }
}

// A node being compiled, with how many of its operands are done.
struct Frame {
    const ASTNode* node;
    Operation operation;
    std::uint32_t next;
    std::uint32_t branch;  // IF: where its branch and jump instructions are
    std::uint32_t jump;
};

std::size_t operandCount(const Frame& frame) {
    switch (rulesOf(frame.operation).shape) {
        case Shape::One:
            return 1;
        case Shape::Pair: {
            const auto& node = static_cast<const CNManyChildrenNode&>(*frame.node);
            return node.oChildren.empty() ? 2 : node.oChildren.size();
        }
        case Shape::Condition:
            return 3;
        case Shape::Leaf:
            break;
    }
    return 0;
}

const ASTNode* operandAt(const Frame& frame, std::size_t i) {
    switch (rulesOf(frame.operation).shape) {
        case Shape::One:
            return static_cast<const CNSingleChildNode&>(*frame.node).poChild;
        case Shape::Pair: {
            const auto& node = static_cast<const CNManyChildrenNode&>(*frame.node);
            if (!node.oChildren.empty()) return node.oChildren[i];
            return i == 0 ? node.poLeft : node.poRight;
        }
        case Shape::Condition: {
            const auto& node = static_cast<const CNIf&>(*frame.node);
            return i == 0 ? node.poCondition : i == 1 ? node.poThen : node.poElse;
        }
        case Shape::Leaf:
            break;
    }
    return nullptr;
}

// Lays the tree out operands first, without recursion, and records where each
// node's operands are for the demand pass.
class Layout {
public:
    explicit Layout(Code& code) : code_(code) {}

    std::size_t emit(const ASTNode& root, Operation operation) {
        visit(&root, operation);
        while (frames_.size() != 0) {
            Frame& frame = frames_.back();
            const std::size_t count = operandCount(frame);
            if (frame.next < count) {
                const bool condition = frame.operation == Operation::If;
                if (condition && frame.next == 1) frame.branch = place(nullptr, Operation::Branch, 0, false);
                if (condition && frame.next == 2) {
                    frame.jump = place(nullptr, Operation::Jump, 0, false);
                    code_[frame.branch].extent = frame.jump + 1;
                }
                const ASTNode* operand = operandAt(frame, frame.next++);
                visit(operand, operand == nullptr ? Operation::Absent : operationOf(*operand));
                continue;
            }
            const Frame done = frame;
            frames_.pop_back();
            if (done.operation == Operation::If) code_[done.jump].extent = static_cast<std::uint32_t>(code_.size());
            finish(done, count);
        }
        return deepest_ + 1;
    }

    // Where each instruction's operands are listed in `operands`.
    Buffer<std::uint32_t, 32> firstOperand;
    Buffer<std::uint32_t, 32> operands;

private:
    void visit(const ASTNode* node, Operation operation) {
        if (isLeaf(operation)) {
            const std::uint32_t at = place(node, operation, 0, true);
            code_[at].flags = leafFlags(node, operation);
            return;
        }
        frames_.push_back(Frame{node, operation, 0, kNone, kNone});
    }

    std::uint32_t place(const ASTNode* node, Operation operation, std::uint32_t extent, bool value) {
        const auto at = static_cast<std::uint32_t>(code_.size());
        code_.push_back(Instruction{node, extent, operation, 0, 0});
        firstOperand.push_back(static_cast<std::uint32_t>(operands.size()));
        if (value) {
            results_.push_back(at);
            if (results_.size() > deepest_) deepest_ = results_.size();
        }
        return at;
    }

    void finish(const Frame& frame, std::size_t count) {
        const Rules& rules = rulesOf(frame.operation);
        const std::size_t first = results_.size() - count;
        std::uint8_t flags = 0;
        if (rules.shape == Shape::Pair && count != 2) flags |= kList;
        if (rules.shape == Shape::Pair && count == 2 &&
            !static_cast<const CNManyChildrenNode&>(*frame.node).oChildren.empty()) {
            flags |= kList;
        }
        if (rules.kind == Kind::Text || rules.kind == Kind::Any) flags |= kMayNotBeNumber;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t operand = results_[first + i];
            operands.push_back(operand);
            if (rules.kind == Kind::FromOperands) flags |= code_[operand].flags & kMayNotBeNumber;
        }
        results_.pop_back(count);
        // IF leaves its condition and one branch to its rules; the rest keep all operands.
        const auto extent = static_cast<std::uint32_t>(rules.shape == Shape::Condition ? 2 : count);
        const std::uint32_t at = place(frame.node, frame.operation, extent, true);
        firstOperand[at] = static_cast<std::uint32_t>(operands.size() - count);
        code_[at].flags = flags;
    }

    Code& code_;
    Buffer<Frame, 16> frames_;
    Buffer<std::uint32_t, 32> results_;
    std::size_t deepest_ = 0;
};

std::uint8_t demandOf(const Instruction& instruction, unsigned asked) {
    return static_cast<std::uint8_t>((instruction.demands >> (4 * asked)) & 0xF);
}

void addDemand(Instruction& instruction, unsigned asked, std::uint8_t demand) {
    instruction.demands = static_cast<std::uint16_t>(instruction.demands | ((demand & 0xF) << (4 * asked)));
}

// Hands each node's demand for one public question down to its operands, root first.
void propagate(Code& code, const Layout& layout, unsigned asked) {
    addDemand(code.back(), asked, static_cast<std::uint8_t>(1u << asked));
    for (std::size_t k = code.size(); k-- > 0;) {
        Instruction& instruction = code[k];
        std::uint8_t demand = demandOf(instruction, asked);
        if (demand == 0 || instruction.operation >= Operation::Host) continue;
        const Rules& rules = rulesOf(instruction.operation);
        // A node without a text rule writes its own number.
        if ((demand & kText) != 0 && rules.text == nullptr) {
            demand |= kNumber;
            addDemand(instruction, asked, kNumber);
        }
        if (rules.shape == Shape::Leaf) continue;
        const std::size_t first = layout.firstOperand[k];
        const std::size_t count = (k + 1 < code.size() ? layout.firstOperand[k + 1] : layout.operands.size()) - first;
        bool anyMayNotBeNumber = false;
        for (std::size_t i = 0; i < count; ++i) {
            anyMayNotBeNumber |= (code[layout.operands[first + i]].flags & kMayNotBeNumber) != 0;
        }
        for (unsigned question = 0; question < 4; ++question) {
            if ((demand & (1u << question)) == 0) continue;
            const Asks asks = rules.asks[question];
            for (std::size_t i = 0; i < count; ++i) {
                const bool second = i > 0 && (instruction.flags & kList) == 0;
                std::uint8_t of = second ? asks.second : asks.first;
                if ((of & kTextIfAnyNotNumber) != 0 && anyMayNotBeNumber) of |= kText;
                addDemand(code[layout.operands[first + i]], asked, of);
            }
        }
    }
}

std::uint8_t demandUnder(const Instruction& instruction, std::uint16_t mask) {
    const unsigned demands = instruction.demands & mask;
    return static_cast<std::uint8_t>((demands | demands >> 4 | demands >> 8 | demands >> 12) & 0xF);
}

}  // namespace

Operation operationOf(const ASTNode& node) {
    const Operation operation = node.operation();
    if (operation >= Operation::Host || typeid(node) != *classOf(operation)) return Operation::Host;
    return operation;
}

ProgramNeeds compile(const ASTNode& root, Operation operation, std::uint16_t asked, Code& code) {
    Layout layout(code);
    ProgramNeeds needs{layout.emit(root, operation), 0};
    for (unsigned question = 0; question < 4; ++question) {
        if ((asked & (0xF << (4 * question))) != 0) propagate(code, layout, question);
    }
    for (std::size_t k = 0; k < code.size(); ++k) {
        // A host's node keeps the text it is asked for where its slot is.
        if (code[k].operation == Operation::Host) needs.textsUnder = 0xFFFF;
        for (unsigned question = 0; question < 4; ++question) {
            if ((demandOf(code[k], question) & kText) != 0) needs.textsUnder |= 0xF << (4 * question);
        }
    }
    return needs;
}

Answer::Answer(const Instruction* code, std::size_t size, std::size_t depth, std::uint16_t mask, bool texts)
    : slots_(depth), texts_(texts ? depth : 0) {
    run(code, size, mask);
}

void Answer::run(const Instruction* code, std::size_t size, std::uint16_t mask) {
    std::size_t top = 0;
    for (std::size_t pc = 0; pc < size;) {
        const Instruction& instruction = code[pc];
        switch (instruction.operation) {
            case Operation::Host:
                slots_[top] = Slot{};
                slots_[top++].host = const_cast<ASTNode*>(instruction.node);
                ++pc;
                continue;
            case Operation::Absent:
                pushAbsent(top++);
                ++pc;
                continue;
            case Operation::Jump:
                pc = instruction.extent;
                continue;
            case Operation::Branch: {
                // IF chooses its branch here, so that only the chosen one runs.
                const std::size_t ifAt = code[instruction.extent - 1].extent;
                Operands condition(nullptr, &slots_[top - 1], textsAt(top - 1), 1, false, raises_);
                bool run = !condition.absent(0);
                // errType alone stops at a bad condition without reading its value.
                if (run && demandUnder(code[ifAt], mask) == kError) {
                    run = condition.error(0) == ErrNone && condition.type(0) == ExprNumber;
                }
                bool truth = false;
                try {
                    if (run) truth = condition.number(0) != 0.0;
                } catch (const Raise&) {
                    run = false;
                }
                if (!run) {
                    pushAbsent(top++);
                    pc = ifAt;
                } else {
                    pc = truth ? pc + 1 : instruction.extent;
                }
                continue;
            }
            default:
                break;
        }
        const std::uint8_t demand = demandUnder(instruction, mask);
        const Rules& rules = rulesOf(instruction.operation);
        const std::size_t first = top - instruction.extent;
        Operands operands(instruction.node, &slots_[first], textsAt(first), instruction.extent,
                          (instruction.flags & kList) != 0, raises_);
        Slot answer{};
        if ((demand & kType) != 0) {
            try {
                answer.type = rules.type != nullptr ? rules.type(operands) : ExprNumber;
            } catch (const Raise&) {
                answer.type = ExprNoType;  // an IF whose condition raises has no type
            }
        }
        if ((demand & kError) != 0) {
            try {
                answer.error = rules.error != nullptr ? rules.error(operands) : ErrNone;
            } catch (const Raise& raise) {
                // A value that raises belongs to an operand with an error of its own.
                const bool operand = raise.operand != Raise::kOwn;
                answer.error = operand ? slots_[first + raise.operand].error : ErrInvalidArg;
                if (answer.error == ErrNone) answer.error = ErrInvalidArg;
            }
        }
        if ((demand & kNumber) != 0) {
            try {
                answer.number = rules.number != nullptr ? rules.number(operands) : 0.0;
            } catch (const Raise& raise) {
                answer.numberRaise = raise.index;
            }
        }
        answer.known = demand;
        if (texts_.empty()) {
            slots_[first] = answer;
        } else {
            std::string text;
            if ((demand & kText) != 0) answer.textRaise = textOf(rules, operands, answer, text);
            // An operand's text is freed as soon as its parent has used it.
            for (std::size_t i = first; i < top; ++i) {
                if (texts_[i].capacity() != 0) std::string().swap(texts_[i]);
            }
            slots_[first] = answer;
            texts_[first] = std::move(text);
        }
        top = first + 1;
        ++pc;
    }
    top_ = top;
}

template <typename Read>
auto Answer::rethrowing(Read read) {
    try {
        return read();
    } catch (const Raise& raise) {
        std::rethrow_exception(raises_[raise.index - 1]);
    }
}

void Answer::pushAbsent(std::size_t at) {
    slots_[at] = Slot{0.0, nullptr, ErrInvalidArg, ExprNoType, 0, 0, kAllQuestions, true};
    if (!texts_.empty()) texts_[at].clear();
}

// A node's text by its rule, or its own number as sstringify writes it;
// returns what the text raises, if anything.
std::uint32_t Answer::textOf(const Rules& rules, Operands& operands, const Slot& answer, std::string& text) {
    if (rules.text == nullptr) {
        if (answer.numberRaise == 0) text = QuandelUtils::sstringify(answer.number);
        return answer.numberRaise;
    }
    try {
        rules.text(operands, text);
    } catch (const Raise& raise) {
        return raise.index;
    }
    return 0;
}

std::uint32_t Answer::type() {
    Operands root(nullptr, &slots_[0], textsAt(0), 1, false, raises_);
    return root.type(0);
}

std::uint32_t Answer::error() {
    Operands root(nullptr, &slots_[0], textsAt(0), 1, false, raises_);
    return root.error(0);
}

double Answer::number() {
    Operands root(nullptr, &slots_[0], textsAt(0), 1, false, raises_);
    return rethrowing([&] { return root.number(0); });
}

std::string Answer::text() {
    Operands root(nullptr, &slots_[0], textsAt(0), 1, false, raises_);
    return rethrowing([&] { return root.takeText(0); });
}

FormulaResult Answer::all() {
    FormulaResult result;
    result.u32Type = type();
    result.u32Error = error();
    if (result.u32Type == ExprNumber) {
        result.f64Value = number();
    } else {
        result.oText = text();
    }
    return result;
}

namespace {

template <typename Read>
auto ask(const ASTNode& node, Operation operation, Asked asked, Read read) {
    Code code;
    const ProgramNeeds needs = compile(node, operation, demandMask(asked), code);
    const std::uint16_t mask = demandMask(asked);
    Answer answer(code.data(), code.size(), needs.depth, mask, (needs.textsUnder & mask) != 0);
    return read(answer);
}

}  // namespace

double numberAs(const ASTNode& node, Operation operation) {
    return ask(node, operation, Asked::Number, [](Answer& answer) { return answer.number(); });
}

std::string textAs(const ASTNode& node, Operation operation) {
    return ask(node, operation, Asked::Text, [](Answer& answer) { return answer.text(); });
}

std::uint32_t typeAs(const ASTNode& node, Operation operation) {
    return ask(node, operation, Asked::Type, [](Answer& answer) { return answer.type(); });
}

std::uint32_t errorAs(const ASTNode& node, Operation operation) {
    return ask(node, operation, Asked::Error, [](Answer& answer) { return answer.error(); });
}

std::uint16_t resultMask(const Instruction& root) {
    std::uint16_t mask = demandMask(Asked::Type) | demandMask(Asked::Error) | demandMask(Asked::Number);
    if ((root.flags & kMayNotBeNumber) != 0) mask |= demandMask(Asked::Text);
    return mask;
}

FormulaResult oEvaluateAll(const ASTNode& root) {
    Code code;
    const ProgramNeeds needs = compile(root, operationOf(root), 0xFFFF, code);
    const std::uint16_t mask = resultMask(code.back());
    Answer answer(code.data(), code.size(), needs.depth, mask, (needs.textsUnder & mask) != 0);
    return answer.all();
}

}  // namespace cellformula
