#ifndef CELLFORMULA_EVALUATION_H
#define CELLFORMULA_EVALUATION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

class ASTNode;

namespace cellformula {

// Answers shared by the operations of one public call. An IF's condition and a
// sum's type are asked for again and again by the nodes above them; keeping
// them here for the length of one call keeps every call linear in the tree
// without storing anything in the (possibly shared) tree itself.
class EvaluationScope {
public:
    EvaluationScope() = default;
    EvaluationScope(const EvaluationScope&) = delete;
    EvaluationScope& operator=(const EvaluationScope&) = delete;

    bool recall(const void* key, double& value) const;
    void remember(const void* key, double value);

private:
    struct Entry {
        const void* key;
        double value;
    };
    static constexpr std::size_t kInlineEntries = 8;
    // Left uninitialised: only the first inlineCount_ entries are ever read,
    // and most calls remember nothing at all.
    Entry inlineEntries_[kInlineEntries];
    std::size_t inlineCount_ = 0;
    std::unique_ptr<std::unordered_map<const void*, double>> overflow_;
};

// Entry points for nodes asking their operands within one call; defined
// inline beside ASTNode, since every level of every evaluation passes here.
inline double numberOf(const ASTNode& node, EvaluationScope& scope);
inline std::string textOf(const ASTNode& node, EvaluationScope& scope);
inline std::uint32_t typeOf(const ASTNode& node, EvaluationScope& scope);
inline std::uint32_t errorOf(const ASTNode& node, EvaluationScope& scope);

// Entry points for the public operations of a node of class Node: each opens
// a scope of its own and runs the class's own answer directly, without a
// second dispatch on the node. Defined beside ASTNode.
template <typename Node>
double evaluateNumber(const Node& node);
template <typename Node>
std::string evaluateText(const Node& node);
template <typename Node>
std::uint32_t evaluateType(const Node& node);
template <typename Node>
std::uint32_t evaluateError(const Node& node);

}  // namespace cellformula

#endif
