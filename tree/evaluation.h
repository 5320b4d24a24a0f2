#ifndef CELLFORMULA_EVALUATION_H
#define CELLFORMULA_EVALUATION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

class ASTNode;

namespace cellformula {

struct StackRules;
template <bool MayBeList>
class BasicTreeOperands;
using TreeOperands = BasicTreeOperands<true>;

// A node's number and error from one walk, returned in two registers. The
// error is wider than any error code so that one value beyond them all can
// say that some node of the subtree has no rules for a walk (a text, a
// host's node, an absent operand), and the ordinary questions answer instead.
struct WalkedAnswer {
    static constexpr std::uint64_t kNotWalked = ~std::uint64_t{0};

    double number = 0.0;
    std::uint64_t error = kNotWalked;

    bool walked() const { return error != kNotWalked; }
    std::uint32_t code() const { return static_cast<std::uint32_t>(error); }
};

// Nodes still to print in an outline, with their depth, the next one last.
using OutlineQueue = std::vector<std::pair<const ASTNode*, unsigned int>>;

// Answers of one node kept for the length of one public call, keyed by the
// node. Small calls stay in the inline slots; deep trees spill into a map.
template <typename Value>
class NodeMemo {
public:
    const Value* find(const ASTNode* node) const {
        for (std::size_t i = 0; i < inlineCount_; ++i) {
            if (inline_[i].node == node) return &inline_[i].value;
        }
        if (!spill_) return nullptr;
        const auto found = spill_->find(node);
        return found == spill_->end() ? nullptr : &found->second;
    }
    void keep(const ASTNode* node, Value value) {
        if (inlineCount_ < kInlineSlots) {
            inline_[inlineCount_++] = Slot{node, std::move(value)};
            return;
        }
        if (!spill_) spill_ = std::make_unique<std::unordered_map<const ASTNode*, Value>>();
        (*spill_)[node] = std::move(value);
    }

private:
    struct Slot {
        const ASTNode* node;
        Value value;
    };
    static constexpr std::size_t kInlineSlots = 8;
    // Left uninitialised: only the first inlineCount_ slots are ever read.
    Slot inline_[kInlineSlots];
    std::size_t inlineCount_ = 0;
    std::unique_ptr<std::unordered_map<const ASTNode*, Value>> spill_;
};

// Everything one call remembers about nodes: values, types and texts.
class CallMemo {
public:
    // Provided, so that making a memo does not zero its slots first.
    CallMemo() {}

    NodeMemo<double>& numbers() { return numbers_; }
    NodeMemo<std::uint32_t>& types() { return types_; }
    const std::string* text(const ASTNode* node) const;
    void keepText(const ASTNode* node, const std::string& text);

private:
    NodeMemo<double> numbers_;
    NodeMemo<std::uint32_t> types_;
    std::unique_ptr<std::unordered_map<const ASTNode*, std::string>> texts_;
};

// Answers that a compiled program already holds for the operands of the
// node whose rule it runs; an answer it does not hold yet is noted as missing
// and stands in as a neutral value until the program has computed it.
class DeferredAnswers {
public:
    virtual double number(const ASTNode& operand) = 0;
    virtual void appendText(const ASTNode& operand, std::string& text) = 0;
    virtual std::uint32_t type(const ASTNode& operand) = 0;
    virtual std::uint32_t error(const ASTNode& operand) = 0;

protected:
    ~DeferredAnswers() = default;
};

class StackSegment;

// Stack segments a call has finished with, kept for its next switch: a call
// that descends a deep tree more than once would otherwise take fresh memory,
// and fault its pages in, every time.
class SpareSegments {
public:
    SpareSegments() = default;
    SpareSegments(const SpareSegments&) = delete;
    SpareSegments& operator=(const SpareSegments&) = delete;
    // Most calls never switch, so this is one test for them.
    ~SpareSegments() {
        if (first_ != nullptr) releaseAll();
    }

    std::unique_ptr<StackSegment> take();
    void give(std::unique_ptr<StackSegment> segment);

private:
    void releaseAll();
    // Owned: the first of a chain linked through each segment's `next`.
    StackSegment* first_ = nullptr;
};

// The context of one public call on a tree: what the call remembers, and how
// much of the caller's stack it may still use.
//
// Every rule asks its operands through this context. A call that classifies
// (exprType, errType) remembers every operand value and text it computes,
// because the error rules ask again for values their operands' rules already
// computed; a call that only evaluates remembers just IF conditions and sum
// types. Walking deeper than the stack budget continues on stack segments of
// the call's own, so trees of any depth can be evaluated on any thread.
class Evaluation {
public:
    // ConditionsOnly and Everything walk the tree; Deferred runs one node's
    // rules for a compiled program, which supplies the operands' answers.
    enum class Memory { ConditionsOnly, Everything, Deferred };

    Evaluation(const ASTNode* entry, Memory memory)
        : entry_(entry), memory_(memory), stackFloor_(stackPointer() - kCallerStackBudget) {
        setFastFloors();
    }
    explicit Evaluation(DeferredAnswers& answers) : Evaluation(nullptr, Memory::Deferred) { deferred_ = &answers; }

    // Whether an operand may be asked with a plain virtual call right here:
    // a walk that keeps only conditions, with stack to spare (numbers and
    // texts), or any walk with stack to spare (types and errors, never kept).
    // One comparison each, as every level of every walk passes here.
    bool asksPlainly() const { return stackPointer() >= plainFloor_; }
    bool asksDirectly() const { return stackPointer() >= directFloor_; }
    Evaluation(const Evaluation&) = delete;
    Evaluation& operator=(const Evaluation&) = delete;

    Memory memory() const { return memory_; }
    bool remembersEverything() const { return memory_ == Memory::Everything; }
    DeferredAnswers& deferred() const { return *deferred_; }
    // The node whose own public operation opened this call.
    bool isEntry(const ASTNode* node) const { return node == entry_; }

    NodeMemo<double>& numbers() { return memo().numbers(); }
    // A node's type, worked out once per call that classifies, where every
    // error rule asks its operands' types again. Other calls ask each node's
    // type once per question about its parent, and a compiled program keeps
    // answers itself, so there it is worked out each time it is asked.
    template <typename Work>
    std::uint32_t rememberedType(const ASTNode* node, Work&& work) {
        if (memory_ != Memory::Everything) return work();
        NodeMemo<std::uint32_t>& types = memo().types();
        if (const std::uint32_t* known = types.find(node)) return *known;
        const std::uint32_t type = work();
        types.keep(node, type);
        return type;
    }
    const std::string* rememberedText(const ASTNode* node) const { return memo_ ? memo_->text(node) : nullptr; }
    void rememberText(const ASTNode* node, const std::string& text) { memo().keepText(node, text); }

    // The stack grows down; a frame above the recorded top (the caller's own,
    // where the context was made) has used nothing yet.
    bool stackRunsLow() const { return stackPointer() < stackFloor_; }

    // Runs `work` here, or on a fresh stack segment once this one is spent.
    template <typename Work>
    auto withStack(Work&& work) -> decltype(work()) {
        if (!stackRunsLow()) return work();
        return onFreshSegment(std::forward<Work>(work));
    }

private:
    // A host thread may have as little as 256 KB of stack and may already be
    // deep in its own calls, so a call uses only this much of it before
    // moving on to segments of its own.
    static constexpr std::size_t kCallerStackBudget = 48 * 1024;

    // Where the stack is now. Read straight from the register where that is
    // one instruction: taking a frame's address would make every rule keep
    // a frame pointer, which costs more than the check itself.
    static std::uintptr_t stackPointer() {
        std::uintptr_t pointer;
#if defined(__x86_64__)
        asm("mov %%rsp, %0" : "=r"(pointer));
#elif defined(__aarch64__)
        asm("mov %0, sp" : "=r"(pointer));
#else
        pointer = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
#endif
        return pointer;
    }

    template <typename Work>
    auto onFreshSegment(Work&& work) -> decltype(work()) {
        using Answer = decltype(work());
        if constexpr (std::is_void_v<Answer>) {
            auto body = [&work] { work(); };
            runOnFreshSegment(&invoke<decltype(body)>, &body);
        } else {
            Answer answer{};
            auto body = [&work, &answer] { answer = work(); };
            runOnFreshSegment(&invoke<decltype(body)>, &body);
            return answer;
        }
    }

    template <typename Body>
    static void invoke(void* body) {
        (*static_cast<Body*>(body))();
    }

    // Switches to a new stack segment, runs body there with this call's budget
    // measured from the segment, switches back and rethrows what body threw.
    void runOnFreshSegment(void (*body)(void*), void* argument);

    const ASTNode* entry_;
    Memory memory_;
    DeferredAnswers* deferred_ = nullptr;
    // The lowest stack address this call may use before moving on, and the
    // same for the two plain ways of asking (the highest address when a way
    // never applies, so that its check always sends the ask elsewhere).
    std::uintptr_t stackFloor_;
    std::uintptr_t plainFloor_ = 0;
    std::uintptr_t directFloor_ = 0;
    void setFastFloors() {
        plainFloor_ = memory_ == Memory::ConditionsOnly ? stackFloor_ : UINTPTR_MAX;
        directFloor_ = memory_ != Memory::Deferred ? stackFloor_ : UINTPTR_MAX;
    }
    // Made on the first answer kept: most calls on a tree of numbers keep
    // nothing and so never pay for it.
    CallMemo& memo() {
        if (!memo_) memo_.emplace();
        return *memo_;
    }
    std::optional<CallMemo> memo_;
    SpareSegments spares_;
};

}  // namespace cellformula

#endif
