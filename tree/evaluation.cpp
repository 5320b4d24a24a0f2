#include "evaluation.h"

namespace cellformula {

bool EvaluationScope::recall(const void* key, double& value) const {
    for (std::size_t i = 0; i < inlineCount_; ++i) {
        if (inlineEntries_[i].key == key) {
            value = inlineEntries_[i].value;
            return true;
        }
    }
    if (!overflow_) return false;
    const auto found = overflow_->find(key);
    if (found == overflow_->end()) return false;
    value = found->second;
    return true;
}

void EvaluationScope::remember(const void* key, double value) {
    if (inlineCount_ < kInlineEntries) {
        inlineEntries_[inlineCount_++] = Entry{key, value};
        return;
    }
    if (!overflow_) overflow_ = std::make_unique<std::unordered_map<const void*, double>>();
    (*overflow_)[key] = value;
}

}  // namespace cellformula
