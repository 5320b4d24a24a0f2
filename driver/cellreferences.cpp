#include "cellreferences.h"

#include <limits>

#include "tokenreader.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

// A name token read as a cell; `isCell` is false for any other name.
struct NameToken {
    CellCorner corner;
    bool isCell;
};

constexpr std::uint64_t kLargestInt = std::numeric_limits<std::int32_t>::max();

// The letter's place in the alphabet (0 for "A" or "a"), 26 or more for any other byte.
unsigned letterIndex(char c) { return static_cast<unsigned>(static_cast<unsigned char>(c) | 0x20u) - 'a'; }
unsigned digitValue(char c) { return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0'; }

// Reads a name token's bytes as SpreadSheetHelper::s8CreateColumnLine reads
// the same text: an optional "$", letters of either case, an optional "$",
// digits that do not start with "0", each coordinate within an int. Reading
// in place spares a string per name, which is most of a reference's cost.
// It fills `read` in place: a returned name, stored in narrow pieces and copied
// at once in wide ones, stalled every name on the store forwarding.
void readName(std::string_view formula, const ScannedToken& token, NameToken& read) {
    read = NameToken{CellCorner{token.begin, token.end, 0, 0, false, false}, false};
    const char* at = formula.data() + token.begin;
    const char* const end = formula.data() + token.end;
    const bool columnAbsolute = at < end && *at == '$';
    if (columnAbsolute) ++at;
    const char* const letters = at;
    std::uint64_t column = 0;
    for (unsigned letter = 0; at < end && (letter = letterIndex(*at)) < 26; ++at) {
        column = column * 26 + letter + 1;
        if (column - 1 > kLargestInt) return;
    }
    if (at == letters) return;
    const bool rowAbsolute = at < end && *at == '$';
    if (rowAbsolute) ++at;
    if (at == end || *at == '0') return;
    std::uint64_t row = 0;
    for (; at < end; ++at) {
        const unsigned digit = digitValue(*at);
        if (digit > 9) return;
        row = row * 10 + digit;
        if (row > kLargestInt) return;
    }
    read.corner.s32Column = static_cast<std::int32_t>(column - 1);
    read.corner.s32Row = static_cast<std::int32_t>(row - 1);
    read.corner.bColumnAbsolute = columnAbsolute;
    read.corner.bRowAbsolute = rowAbsolute;
    read.isCell = true;
}

// Collects references from the token stream, holding back a cell name until
// it is clear whether a ":" and a second cell name make it a range.
class ReferenceCollector {
public:
    ReferenceCollector(const std::string& formula, std::vector<CellReference>& references)
        : formula_(formula), references_(references) {
        references_.clear();
    }

    void take(const ScannedToken& token) {
        if (token.symbol == Symbol::S_STRING) {
            if (stage_ == Stage::AfterColon) {
                readName(formula_, token, second_);
                // The parser pairs these two names as a range whatever they are.
                if (first_.isCell && second_.isCell) {
                    addRange(first_.corner, second_.corner);
                } else {
                    addSingle(first_);
                    addSingle(second_);
                }
                stage_ = Stage::Idle;
                return;
            }
            flush();
            readName(formula_, token, first_);
            stage_ = Stage::AfterName;
            return;
        }
        if (stage_ == Stage::AfterName && token.symbol == Symbol::S_45_) {  // ':'
            stage_ = Stage::AfterColon;
            return;
        }
        flush();
    }

    void finish() { flush(); }

private:
    enum class Stage { Idle, AfterName, AfterColon };

    void flush() {
        if (stage_ != Stage::Idle) addSingle(first_);
        stage_ = Stage::Idle;
    }

    void addSingle(const NameToken& name) {
        if (!name.isCell) return;
        references_.push_back(CellReference{name.corner.u64Begin, name.corner.u64End, false, name.corner, name.corner});
    }

    void addRange(const CellCorner& from, const CellCorner& to) {
        references_.push_back(CellReference{from.u64Begin, to.u64End, true, from, to});
    }

    std::string_view formula_;
    std::vector<CellReference>& references_;
    NameToken first_{};
    NameToken second_{};
    Stage stage_ = Stage::Idle;
};

}  // namespace

std::vector<CellReference> CellReferences::oGetReferences(const std::string& formula) {
    std::vector<CellReference> references;
    vGetReferences(formula, references);
    return references;
}

void CellReferences::vGetReferences(const std::string& formula, std::vector<CellReference>& references) {
    ReferenceCollector collector(formula, references);
    TokenReader reader(formula);
    ScannedToken token{};
    while (reader.next(token)) collector.take(token);
    collector.finish();
}

}  // namespace ExpressionParser
