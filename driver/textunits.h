#ifndef CELLFORMULA_TEXTUNITS_H
#define CELLFORMULA_TEXTUNITS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ExpressionParser {

// A place in a text counted the ways editors count: UTF-16 code units and
// code points.
struct TextUnits {
    std::uint64_t utf16 = 0;
    std::uint64_t codePoints = 0;
};

// Counts UTF-8 text in UTF-16 code units and code points while a reader moves
// forward through it. Every byte that is not part of a well-formed sequence
// counts as one unit of each, as its U+FFFD replacement would; an offset
// inside a character's bytes counts the whole character, so the counts never
// decrease as the offset grows.
class TextUnitCounter {
public:
    // `text` must outlive the counter.
    explicit TextUnitCounter(std::string_view text) : text_(text) {}

    // The counts at `offset`; offsets must not decrease between calls, and
    // one past the end is clamped to the end.
    TextUnits at(std::size_t offset) {
        if (offset > text_.size()) offset = text_.size();
        while (at_ < offset) {
            // Formulas are mostly ASCII, where every byte is one unit of each.
            const unsigned char lead = static_cast<unsigned char>(text_[at_]);
            if (lead < 0x80) {
                ++at_;
                ++units_.utf16;
                ++units_.codePoints;
                continue;
            }
            const std::size_t length = sequenceLength(text_, at_);
            at_ += length;
            units_.utf16 += length == 4 ? 2 : 1;
            ++units_.codePoints;
        }
        return units_;
    }

    // The counts at `offset` of `text`, counted from its start.
    static TextUnits of(std::string_view text, std::size_t offset) { return TextUnitCounter(text).at(offset); }

    // Bytes of the well-formed UTF-8 sequence at `at`, or 1 when the byte there
    // starts none (overlong forms, surrogates and code points above U+10FFFF are
    // not well formed).
    static std::size_t sequenceLength(std::string_view text, std::size_t at);

private:
    std::string_view text_;
    std::size_t at_ = 0;
    TextUnits units_;
};

}  // namespace ExpressionParser

#endif
