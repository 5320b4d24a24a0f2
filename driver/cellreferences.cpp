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

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Reads a name token's bytes as SpreadSheetHelper::s8CreateColumnLine reads
// the same text: an optional "$", letters of either case, an optional "$",
// digits that do not start with "0", each coordinate within an int. Reading
// in place spares a string per name, which is most of a reference's cost.
NameToken readName(std::string_view formula, const ScannedToken& token) {
    const std::string_view name = formula.substr(token.begin, token.end - token.begin);
    NameToken read{CellCorner{token.begin, token.end, 0, 0, false, false}, false};
    std::size_t at = 0;
    const bool columnAbsolute = at < name.size() && name[at] == '$';
    if (columnAbsolute) ++at;
    const std::size_t letters = at;
    std::uint64_t column = 0;
    for (; at < name.size() && isLetter(name[at]); ++at) {
        column = column * 26 + static_cast<std::uint64_t>((name[at] & ~0x20) - 'A' + 1);
        if (column - 1 > kLargestInt) return read;
    }
    if (at == letters) return read;
    const bool rowAbsolute = at < name.size() && name[at] == '$';
    if (rowAbsolute) ++at;
    if (at == name.size() || name[at] == '0') return read;
    std::uint64_t row = 0;
    for (; at < name.size(); ++at) {
        if (!isDigit(name[at])) return read;
        row = row * 10 + static_cast<std::uint64_t>(name[at] - '0');
        if (row > kLargestInt) return read;
    }
    read.corner.s32Column = static_cast<std::int32_t>(column - 1);
    read.corner.s32Row = static_cast<std::int32_t>(row - 1);
    read.corner.bColumnAbsolute = columnAbsolute;
    read.corner.bRowAbsolute = rowAbsolute;
    read.isCell = true;
    return read;
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
            const NameToken name = readName(formula_, token);
            if (stage_ == Stage::AfterColon) {
                // The parser pairs these two names as a range whatever they are.
                if (first_.isCell && name.isCell) {
                    addRange(first_.corner, name.corner);
                } else {
                    addSingle(first_);
                    addSingle(name);
                }
                stage_ = Stage::Idle;
                return;
            }
            flush();
            first_ = name;
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
