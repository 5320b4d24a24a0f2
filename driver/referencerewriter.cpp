#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "parserdriver.h"
#include "spreadsheethelper.h"
#include "sstringify.h"

namespace ExpressionParser {
namespace {

constexpr std::int64_t kLargestInt = std::numeric_limits<int>::max();
constexpr std::size_t kNone = std::string::npos;
// The anchor a wrapper passes for the coordinate it leaves alone, together with a change of 0.
constexpr int kUntouched = 3000000;

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

// The moved coordinate, or nothing when it lay in a deleted row or column.
std::optional<std::int64_t> moveCoordinate(const CoordinateRule& rule, std::int64_t value) {
    if (rule.plainOffset) return value + rule.change;
    if (rule.change == -1) {
        if (value == rule.anchor) return std::nullopt;
        return value > rule.anchor ? value - 1 : value;
    }
    if (rule.change > 0 && value >= rule.anchor) return value + rule.change;
    return value;
}

// A reference as written: column part ("$" and letters), row part ("$" and
// digits), and the position just behind it.
struct Reference {
    std::string column;
    std::string row;
    std::size_t end;
};

// Reads greedily from `start`, which holds "$" or an upper-case letter;
// nothing when the characters there do not form a reference.
std::optional<Reference> readReference(const std::string& text, std::size_t start) {
    Reference reference{std::string(1, text[start]), std::string(), text.size()};
    bool letterPhase = true;
    for (std::size_t at = start + 1; at < text.size(); ++at) {
        const char c = text[at];
        const bool lastOrBeforeNonLetter = at + 1 == text.size() || !isUpper(text[at + 1]);
        if (c == '$') {
            if (!letterPhase || !reference.row.empty() || text[at - 1] == '$') return std::nullopt;
            reference.row = "$";
        } else if (isUpper(c) && letterPhase) {
            reference.column += c;
        } else if (isDigit(c) && lastOrBeforeNonLetter) {
            if (reference.column == "$" || (letterPhase && c == '0')) return std::nullopt;
            reference.row += c;
            letterPhase = false;
        } else {
            if (letterPhase) return std::nullopt;
            reference.end = at;
            return reference;
        }
    }
    if (letterPhase) return std::nullopt;
    return reference;
}

std::string withoutMarker(const std::string& part) { return part[0] == '$' ? part.substr(1) : part; }

// The rewritten reference, "#REF" when it leaves the sheet, or nothing when
// its own coordinates do not fit an int: such a run names no cell and is
// copied unchanged.
std::optional<std::string> rewriteReference(const Reference& reference, const Edit& edit) {
    int columnIndex = 0;
    int rowIndex = 0;
    const std::string cellName = withoutMarker(reference.column) + withoutMarker(reference.row);
    if (SpreadSheetHelper::s8CreateColumnLine(cellName, columnIndex, rowIndex) != 0) return std::nullopt;

    std::string rewritten = reference.column;
    if (reference.column[0] != '$') {
        const auto column = moveCoordinate(edit.column, columnIndex);
        if (!column || *column < 0 || *column > kLargestInt) return std::string("#REF");
        rewritten = SpreadSheetHelper::oGetLetterByIdx(static_cast<int>(*column));
    }
    if (reference.row[0] == '$') return rewritten + reference.row;
    const auto row = moveCoordinate(edit.row, static_cast<std::int64_t>(rowIndex) + 1);
    if (!row || *row < 1 || *row > kLargestInt) return std::string("#REF");
    return rewritten + QuandelUtils::sstringify(static_cast<int>(*row));
}

// Finds named-input sections ("input(" or "INPUT(" up to the next ")") while
// the scan moves forward, so each spelling's search runs over the text once.
class InputSections {
public:
    explicit InputSections(const std::string& text)
        : text_(text), lastClose_(text.rfind(')')), lower_(text.find("input(")), upper_(text.find("INPUT(")) {}

    // End (just behind the ")") of the section starting at `at`, or kNone.
    std::size_t sectionEndAt(std::size_t at) {
        if (lower_ < at) lower_ = text_.find("input(", at);
        if (upper_ < at) upper_ = text_.find("INPUT(", at);
        if (at != lower_ && at != upper_) return kNone;
        if (lastClose_ == kNone || lastClose_ < at + 6) return kNone;
        return text_.find(')', at + 6) + 1;
    }

private:
    const std::string& text_;
    std::size_t lastClose_;
    std::size_t lower_;
    std::size_t upper_;
};

// The text that replaces the reference read at `start`.
std::string replacement(const std::string& formula, std::size_t start, const Reference& reference,
                        const Edit& edit) {
    // A reference-like name right before "(" is a function such as ATAN2 or LOG10.
    const bool functionName = reference.end < formula.size() && formula[reference.end] == '(';
    const auto rewritten = functionName ? std::nullopt : rewriteReference(reference, edit);
    return rewritten ? *rewritten : formula.substr(start, reference.end - start);
}

std::size_t endOfCapitals(const std::string& text, std::size_t at) {
    while (at < text.size() && isUpper(text[at])) ++at;
    return at;
}

std::string rewriteFormula(const std::string& formula, const Edit& edit) {
    if (formula.empty() || formula[0] != '=') return formula;
    std::string output;
    output.reserve(formula.size());
    InputSections sections(formula);
    // Every start inside one run of capitals meets the character after the run
    // in the same state, so one abandoned attempt stands for the whole run and
    // long runs cost linear time.
    std::size_t abandonedUntil = 0;
    std::size_t at = 0;
    while (at < formula.size()) {
        const std::size_t sectionEnd = sections.sectionEndAt(at);
        if (sectionEnd != kNone) {
            output.append(formula, at, sectionEnd - at);
            at = sectionEnd;
            continue;
        }
        const char c = formula[at];
        const bool mayStart = c == '$' || (isUpper(c) && at >= abandonedUntil);
        const auto reference = mayStart ? readReference(formula, at) : std::nullopt;
        if (!reference) {
            if (mayStart && c != '$') abandonedUntil = endOfCapitals(formula, at);
            output += c;
            ++at;
            continue;
        }
        output += replacement(formula, at, *reference, edit);
        at = reference->end;
    }
    return output;
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
