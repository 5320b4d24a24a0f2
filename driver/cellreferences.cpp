#include "cellreferences.h"

#include "cellname.h"
#include "textunits.h"
#include "referencereader.h"
#include "tokenreader.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

// A name token read as a cell; `isCell` is false for any other name.
struct NameToken {
    CellCorner corner;
    bool isCell;
};

// Reads a name token's bytes as a cell name in place. It fills `read` field
// by field: a name returned whole, stored in narrow pieces and copied at once
// in wide ones, stalled every name on the store forwarding.
void readName(std::string_view formula, const ScannedToken& token, TextUnitCounter& units, NameToken& read) {
    read = NameToken{CellCorner{token.begin, token.end, 0, 0, false, false, 0, 0, 0, 0}, false};
    SpreadSheetHelper::CellName cell;
    if (!SpreadSheetHelper::readCellName(formula.substr(token.begin, token.end - token.begin), cell)) return;
    const TextUnits begin = units.at(token.begin);
    read.corner.u64BeginUtf16 = begin.utf16;
    read.corner.u64BeginCodePoint = begin.codePoints;
    const TextUnits end = units.at(token.end);
    read.corner.u64EndUtf16 = end.utf16;
    read.corner.u64EndCodePoint = end.codePoints;
    read.corner.s32Column = cell.column;
    read.corner.s32Row = cell.row;
    read.corner.bColumnAbsolute = cell.columnAbsolute;
    read.corner.bRowAbsolute = cell.rowAbsolute;
    read.isCell = true;
}

// Collects references from the token stream, holding back a cell name until
// it is clear whether a ":" and a second cell name make it a range.
class ReferenceCollector {
public:
    ReferenceCollector(const std::string& formula, std::vector<CellReference>& references)
        : formula_(formula), references_(references), units_(formula) {
        references_.clear();
    }

    void take(const ScannedToken& token) {
        if (token.symbol == Symbol::S_STRING) {
            if (stage_ == Stage::AfterColon) {
                readName(formula_, token, units_, second_);
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
            readName(formula_, token, units_, first_);
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
        const CellCorner& cell = name.corner;
        references_.push_back(CellReference{cell.u64Begin, cell.u64End, false, cell, cell, cell.u64BeginUtf16,
                                            cell.u64EndUtf16, cell.u64BeginCodePoint, cell.u64EndCodePoint});
    }

    void addRange(const CellCorner& from, const CellCorner& to) {
        references_.push_back(CellReference{from.u64Begin, to.u64End, true, from, to, from.u64BeginUtf16,
                                            to.u64EndUtf16, from.u64BeginCodePoint, to.u64EndCodePoint});
    }

    std::string_view formula_;
    std::vector<CellReference>& references_;
    TextUnitCounter units_;
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

namespace {

void collect(const std::string& formula, TokenReader& reader, std::vector<CellReference>& references) {
    ReferenceCollector collector(formula, references);
    ScannedToken token{};
    while (reader.next(token)) collector.take(token);
    collector.finish();
}

}  // namespace

void CellReferences::vGetReferences(const std::string& formula, std::vector<CellReference>& references) {
    TokenReader reader(formula);
    collect(formula, reader, references);
}

void ReferenceReader::read(const std::string& formula, std::vector<CellReference>& references) {
    reader_.restart(formula);
    collect(formula, reader_, references);
}

}  // namespace ExpressionParser
