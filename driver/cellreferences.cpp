#include "cellreferences.h"

#include "spreadsheethelper.h"
#include "tokenreader.h"

namespace ExpressionParser {
namespace {

using Symbol = Parser::symbol_kind;

// A name token read as a cell; `isCell` is false for any other name.
struct NameToken {
    CellCorner corner;
    bool isCell;
};

NameToken readName(std::string_view formula, const ScannedToken& token) {
    const std::string_view name = formula.substr(token.begin, token.end - token.begin);
    NameToken read{CellCorner{token.begin, token.end, 0, 0, false, false}, false};
    int column = 0;
    int row = 0;
    if (SpreadSheetHelper::s8CreateColumnLine(std::string(name), column, row) != 0) return read;
    // In a valid cell name a leading "$" marks the column and any later one the row.
    read.corner.s32Column = column;
    read.corner.s32Row = row;
    read.corner.bColumnAbsolute = name[0] == '$';
    read.corner.bRowAbsolute = name.find('$', 1) != std::string_view::npos;
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
