#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "parserdriver.h"
#include "rewriteoutput.h"

namespace ExpressionParser {
namespace {

using rewriting::Output;
using rewriting::RowTexts;
using rewriting::copyRun;
using rewriting::kShortRun;
using rewriting::writeLetters;

constexpr std::int64_t kLargestInt = std::numeric_limits<int>::max();
constexpr std::size_t kNone = std::string::npos;
// The anchor a wrapper passes for the coordinate it leaves alone, together with a change of 0.
constexpr int kUntouched = 3000000;
// Coordinates that fit an int take at most 7 letters and 10 digits, so a
// written column with both markers and the fixed-size move of a fixed row's
// digits stay within 1 + 7 + 1 + kShortRun characters.
constexpr std::size_t kReferenceRoom = 1 + 7 + 1 + kShortRun;

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// How one coordinate follows an edit: moved by a plain offset, or shifted by
// an insertion (change > 0) or a deletion (change = -1) at an anchor.
struct CoordinateRule {
    bool plainOffset;
    std::int64_t anchor;
    std::int64_t change;
};

struct Edit {
    CoordinateRule row;     // acts on row numbers, counted from 1
    CoordinateRule column;  // acts on column indices, counted from 0
};

// Moves one coordinate; false when it lay in a deleted row or column or
// lands below `lowest` or beyond an int, off the sheet.
bool moveCoordinate(const CoordinateRule& rule, std::int64_t lowest, std::int64_t& value) {
    if (rule.plainOffset) {
        value += rule.change;
    } else if (rule.change == -1) {
        if (value == rule.anchor) return false;
        if (value > rule.anchor) --value;
    } else if (rule.change > 0 && value >= rule.anchor) {
        value += rule.change;
    }
    return value >= lowest && value <= kLargestInt;
}

// A reference as written, by positions in the formula: an optional "$"
// before the column, letters, an optional "$" before the row, digits. The
// row marker may also stand between letters ("$A$B1" reads as column AB with
// both markers), so the letters are not always one slice.
struct Reference {
    std::size_t start;
    std::size_t rowMarker;  // position of the row's "$", or kNone
    std::size_t digits;     // position of the first row digit
    std::size_t end;        // position just behind the reference
    // What letters ("A" = 1, "AA" = 27) and digits spell; both stop growing
    // once past an int, so long runs cannot wrap into a small coordinate.
    std::uint64_t letters;
    std::uint64_t number;

    // Whether the letters and digits name a cell whose coordinates fit an int.
    bool fits() const {
        return letters - 1 <= static_cast<std::uint64_t>(kLargestInt) &&
               number <= static_cast<std::uint64_t>(kLargestInt);
    }
};

// Reads greedily from `start`, which holds "$" or an upper-case letter;
// false when the characters there do not form a reference.
bool readReference(const std::string& text, std::size_t start, Reference& reference) {
    constexpr std::uint64_t kGrowing = kLargestInt + 1;
    const char* const chars = text.data();
    const std::size_t size = text.size();
    std::uint64_t letters = chars[start] == '$' ? 0u : chars[start] - 'A' + 1u;
    std::size_t rowMarker = kNone;
    std::size_t at = start + 1;
    // Letters, with at most one row marker among or behind them and never two "$" in a row.
    for (; at < size; ++at) {
        const char c = chars[at];
        if (isUpper(c)) {
            if (letters <= kGrowing) letters = letters * 26 + (c - 'A' + 1u);
        } else if (c == '$' && rowMarker == kNone && chars[at - 1] != '$') {
            rowMarker = at;
        } else {
            break;
        }
    }
    // The first digit follows a letter, is no "0" and stands before no capital.
    if (at == size || !isDigit(chars[at]) || chars[at] == '0' || letters == 0) return false;
    if (at + 1 < size && isUpper(chars[at + 1])) return false;
    const std::size_t digits = at;
    std::uint64_t number = 0;
    // A later digit right before a capital ends the reference in front of it.
    for (; at < size && isDigit(chars[at]) && !(at + 1 < size && isUpper(chars[at + 1])); ++at) {
        if (number <= kGrowing) number = number * 10 + (chars[at] - '0' + 0u);
    }
    // A "$" right behind the digits spoils the whole run.
    if (at < size && chars[at] == '$') return false;
    reference = Reference{start, rowMarker, digits, at, letters, number};
    return true;
}

// Appends the formula from `copied` up to a reference whose coordinates fit,
// then the reference rewritten, or "#REF" when it leaves the sheet.
void appendRewritten(const std::string& text, std::size_t copied, const Reference& reference, const Edit& edit,
                     RowTexts& rowTexts, Output& output) {
    const char* const chars = text.data();
    const char* const charsEnd = chars + text.size();
    char* out = output.room(std::max(reference.start - copied, kShortRun) + kReferenceRoom);
    out = copyRun(chars + copied, chars + reference.start, charsEnd, out);

    const bool columnFixed = chars[reference.start] == '$';
    const bool rowFixed = reference.rowMarker != kNone;
    std::int64_t column = static_cast<std::int64_t>(reference.letters) - 1;
    std::int64_t row = static_cast<std::int64_t>(reference.number);
    if ((!columnFixed && !moveCoordinate(edit.column, 0, column)) || (!rowFixed && !moveCoordinate(edit.row, 1, row))) {
        static constexpr char kOffSheet[] = "#REF";
        output.wrote(std::copy(kOffSheet, kOffSheet + 4, out));
        return;
    }

    if (columnFixed) {
        // Letters written around a row marker close up behind the column's "$".
        *out++ = '$';
        for (std::size_t at = reference.start + 1; at < reference.digits; ++at) {
            if (chars[at] != '$') *out++ = chars[at];
        }
    } else {
        out = writeLetters(column, out);
    }
    if (rowFixed) {
        *out++ = '$';
        output.wrote(copyRun(chars + reference.digits, chars + reference.end, charsEnd, out));
        return;
    }
    output.wrote(out);
    rowTexts.append(static_cast<int>(row), output);
}

// Finds named-input sections ("input(" or "INPUT(" up to the next ")") while
// the scan moves forward, so each spelling's search runs over the text once.
class InputSections {
public:
    explicit InputSections(const std::string& text)
        : text_(text), lower_(text.find("input(")), upper_(text.find("INPUT(")), nearest_(std::min(lower_, upper_)) {}

    // The first section start at or after `from`, or kNone; `from` never moves back.
    std::size_t nextFrom(std::size_t from) {
        if (from <= nearest_) return nearest_;
        if (lower_ < from) lower_ = text_.find("input(", from);
        if (upper_ < from) upper_ = text_.find("INPUT(", from);
        nearest_ = std::min(lower_, upper_);
        return nearest_;
    }

    // End (just behind the ")") of the section starting at `start`, or kNone
    // when no ")" follows it.
    std::size_t endOf(std::size_t start) {
        // The last ")" settles at once whether any section can still close,
        // so many unclosed starts cost no repeated search.
        if (!lastCloseKnown_) {
            lastClose_ = text_.rfind(')');
            lastCloseKnown_ = true;
        }
        if (lastClose_ == kNone || lastClose_ < start + 6) return kNone;
        return text_.find(')', start + 6) + 1;
    }

private:
    const std::string& text_;
    std::size_t lower_;
    std::size_t upper_;
    std::size_t nearest_;
    bool lastCloseKnown_ = false;
    std::size_t lastClose_ = kNone;
};

std::size_t endOfCapitals(const std::string& text, std::size_t at) {
    while (at < text.size() && isUpper(text[at])) ++at;
    return at;
}

bool mayStartReference(char c) { return c == '$' || isUpper(c); }

std::string rewriteFormula(const std::string& formula, const Edit& edit) {
    if (formula.empty() || formula[0] != '=') return formula;
    const char* const chars = formula.data();
    const std::size_t size = formula.size();
    Output output(size + size / 8);
    InputSections sections(formula);
    RowTexts rowTexts(size);
    // Everything from `copied` up to the scan position reads as it stands and
    // is appended in one piece when a rewritten reference or the end follows.
    std::size_t copied = 0;
    // Every start inside one run of capitals meets the character after the run
    // in the same state, so one abandoned attempt stands for the whole run and
    // long runs cost linear time.
    std::size_t abandonedUntil = 0;
    std::size_t at = 0;
    Reference reference{};
    while (at < size) {
        std::size_t sectionAt = sections.nextFrom(at);
        if (sectionAt == at) {
            const std::size_t sectionEnd = sections.endOf(at);
            if (sectionEnd != kNone) {
                at = sectionEnd;
                continue;
            }
            // An unclosed section start reads like any other text.
            sectionAt = sections.nextFrom(at + 1);
        } else {
            // Characters that start neither a reference nor a section pass in one sweep.
            const std::size_t stop = std::min(sectionAt, size);
            while (at < stop && !mayStartReference(chars[at])) ++at;
            if (at == stop) continue;
        }
        const char c = chars[at];
        if (!mayStartReference(c) || (c != '$' && at < abandonedUntil)) {
            ++at;
            continue;
        }
        if (!readReference(formula, at, reference)) {
            if (c == '$') {
                ++at;
            } else {
                abandonedUntil = endOfCapitals(formula, at);
                at = std::min(abandonedUntil, sectionAt);
            }
            continue;
        }
        // A reference-like name right before "(" is a function such as ATAN2
        // or LOG10; a run whose coordinates do not fit an int names no cell.
        const bool functionName = reference.end < size && chars[reference.end] == '(';
        if (!functionName && reference.fits()) {
            appendRewritten(formula, copied, reference, edit, rowTexts, output);
            copied = reference.end;
        }
        at = reference.end;
    }
    output.append(chars + copied, chars + size);
    return output.take();
}

CoordinateRule offsetBy(int offset) { return CoordinateRule{true, 0, offset}; }
CoordinateRule changeAt(int anchor, int change) { return CoordinateRule{false, anchor, change}; }

}  // namespace

std::int16_t s16FindTextIndex(const std::string& text, const std::string& needle, std::int16_t start) {
    // A negative start names no position, like a start beyond the text.
    if (start < 0 || static_cast<std::size_t>(start) > text.size()) return -1;
    const std::size_t found = text.find(needle, static_cast<std::size_t>(start));
    if (found == kNone || found > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) return -1;
    return static_cast<std::int16_t>(found);
}

std::string ParserDriver::oOffsetCellsNames(const std::string& formula, int rowOffset, int columnOffset) {
    return rewriteFormula(formula, Edit{offsetBy(rowOffset), offsetBy(columnOffset)});
}

std::string ParserDriver::oChangeCellNames(const std::string& formula, int row, int column, int rowChange,
                                           int columnChange) {
    return rewriteFormula(formula, Edit{changeAt(row, rowChange), changeAt(column, columnChange)});
}

std::string ParserDriver::oChangeCellNamesAfterRowInsertion(const std::string& formula, int row) {
    return oChangeCellNames(formula, row, kUntouched, 1, 0);
}

std::string ParserDriver::oChangeCellNamesAfterColumnInsertion(const std::string& formula, int column) {
    return oChangeCellNames(formula, kUntouched, column, 0, 1);
}

std::string ParserDriver::oChangeCellNamesAfterRowDeletion(const std::string& formula, int row) {
    return oChangeCellNames(formula, row, kUntouched, -1, 0);
}

std::string ParserDriver::oChangeCellNamesAfterColumnDeletion(const std::string& formula, int column) {
    return oChangeCellNames(formula, kUntouched, column, 0, -1);
}

}  // namespace ExpressionParser
