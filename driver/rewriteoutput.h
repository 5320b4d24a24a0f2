#ifndef CELLFORMULA_REWRITEOUTPUT_H
#define CELLFORMULA_REWRITEOUTPUT_H

// The writing half of reference rewriting: the output buffer, column letters
// and row numbers. Internal to the library; not installed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "sstringify.h"

namespace ExpressionParser {
namespace rewriting {

// A run this short is copied with one fixed-size move.
constexpr std::size_t kShortRun = 16;

// Writes the letters of a column index at `out`, spelled as
// SpreadSheetHelper::oGetLetterByIdx spells them, and returns their end.
inline char* writeLetters(std::int64_t index, char* out) {
    std::size_t count = 1;
    for (std::int64_t limit = 26, block = 26; index >= limit; ++count) {
        block *= 26;
        limit += block;
    }
    char* at = out + count;
    do {
        *--at = static_cast<char>('A' + index % 26);
        index = index / 26 - 1;
    } while (index >= 0);
    return out + count;
}

// Copies the characters from `from` to `to` to `out`. Runs between
// references are short, so one fixed-size move covers them whenever the
// source has that many characters left; `out` always has room for it.
inline char* copyRun(const char* from, const char* to, const char* sourceEnd, char* out) {
    const auto length = static_cast<std::size_t>(to - from);
    if (length <= kShortRun && static_cast<std::size_t>(sourceEnd - from) >= kShortRun) {
        std::memcpy(out, from, kShortRun);
    } else {
        std::memcpy(out, from, length);
    }
    return out + length;
}

// The rewritten formula, written through a cursor: one step makes room for
// a copied run and a reference, so a reference costs stores, not calls.
class Output {
public:
    explicit Output(std::size_t expected) : text_(expected, '\0') {}

    // Where the next `size` characters go; `wrote` then takes the new end.
    char* room(std::size_t size) {
        if (text_.size() - used_ < size) text_.resize(std::max(2 * text_.size(), used_ + size));
        return &text_[used_];
    }
    void wrote(const char* end) { used_ = static_cast<std::size_t>(end - text_.data()); }
    void append(const char* from, const char* to) { wrote(std::copy(from, to, room(static_cast<std::size_t>(to - from)))); }

    std::string take() {
        text_.resize(used_);
        return std::move(text_);
    }

private:
    std::string text_;
    std::size_t used_ = 0;
};

// Row texts already made during one rewriting: the same rows recur throughout
// a formula, and a copied text is cheaper than a fresh conversion; the text
// kept is the one sstringify made, so the output is the same.
class RowTexts {
public:
    explicit RowTexts(std::size_t formulaSize) : slots_(slotCount(formulaSize)) {}

    // Appends the text of row number `row`.
    void append(int row, Output& output) {
        Slot& slot = slots_[static_cast<std::size_t>(row) & (slots_.size() - 1)];
        if (slot.row != row) {
            const std::string text = QuandelUtils::sstringify(row);
            if (text.size() > sizeof slot.text) {
                output.append(text.data(), text.data() + text.size());
                return;
            }
            slot.row = row;
            slot.length = static_cast<unsigned char>(text.size());
            std::memcpy(slot.text, text.data(), text.size());
        }
        // The whole slot is copied in one fixed-size move; only `length` of it counts.
        char* const out = output.room(sizeof slot.text);
        std::memcpy(out, slot.text, sizeof slot.text);
        output.wrote(out + slot.length);
    }

private:
    // A power of two, about one slot per 8 characters of formula, at most 1024.
    static std::size_t slotCount(std::size_t formulaSize) {
        std::size_t count = 1;
        while (count < 1024 && count * 8 < formulaSize) count *= 2;
        return count;
    }

    struct Slot {
        int row = 0;  // no row is numbered 0, so a fresh slot holds nothing
        unsigned char length = 0;
        char text[11] = {};  // an int's digits and sign under the classic locale
    };
    std::vector<Slot> slots_;
};

}  // namespace rewriting
}  // namespace ExpressionParser

#endif
