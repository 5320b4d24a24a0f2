#ifndef CELLFORMULA_EVALUATION_H
#define CELLFORMULA_EVALUATION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

class ASTNode;

namespace cellformula {

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
    enum class Memory { ConditionsOnly, Everything };

    Evaluation(const ASTNode* entry, Memory memory);
    Evaluation(const Evaluation&) = delete;
    Evaluation& operator=(const Evaluation&) = delete;

    bool remembersEverything() const { return memory_ == Memory::Everything; }
    // The node whose own public operation opened this call.
    bool isEntry(const ASTNode* node) const { return node == entry_; }

    NodeMemo<double>& numbers() { return numbers_; }
    NodeMemo<std::uint32_t>& types() { return types_; }
    const std::string* rememberedText(const ASTNode* node) const;
    void rememberText(const ASTNode* node, const std::string& text);

    // Runs `work` here, or on a fresh stack segment once this one is spent.
    template <typename Work>
    auto withStack(Work&& work) -> decltype(work()) {
        if (!stackRunsLow()) return work();
        return onFreshSegment(std::forward<Work>(work));
    }

private:
    bool stackRunsLow() const {
        const char* here = static_cast<const char*>(__builtin_frame_address(0));
        return static_cast<std::size_t>(stackTop_ - here) > stackBudget_;
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
    const char* stackTop_;
    std::size_t stackBudget_;
    NodeMemo<double> numbers_;
    NodeMemo<std::uint32_t> types_;
    std::unique_ptr<std::unordered_map<const ASTNode*, std::string>> texts_;
};

}  // namespace cellformula

#endif
