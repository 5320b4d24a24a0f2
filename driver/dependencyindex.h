#ifndef CELLFORMULA_DEPENDENCYINDEX_H
#define CELLFORMULA_DEPENDENCYINDEX_H

// Which formulas read a cell: single references in a hash map, ranges as
// intervals of rows in one list per column. Internal to the library; not installed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "blocklist.h"
#include "cellmap.h"
#include "editrule.h"

namespace ExpressionParser {

// One formula's claim on cells, valid while the formula's generation matches.
struct Reader {
    std::uint32_t node;
    std::uint32_t generation;
};

class DependencyIndex {
public:
    // Ranges of at most this many rows go to a column's sorted list, where a
    // lookup looks back at most this far; taller ones to a list scanned whole.
    static constexpr std::int32_t kShortRows = 64;

    // `rect` must lie in the sheet.
    void add(const CellRect& rect, Reader reader);
    void clear();
    std::size_t entries() const { return entries_; }
    std::size_t bytes() const;

    // Calls visit(reader) for every entry covering the cell; a formula may come more than once.
    template <class Visit>
    void forEachReader(std::int32_t column, std::int32_t row, Visit&& visit) {
        if (const std::uint32_t* head = singles_.find(CellMap::key(column, row))) {
            visitChain(*head, visit);
        }
        if (static_cast<std::size_t>(column) >= columns_.size()) return;
        forEachRange(columns_[static_cast<std::size_t>(column)], row, row, visit);
    }

    // Calls visit(reader) for every entry meeting any cell of `rect` (in the sheet).
    template <class Visit>
    void forEachReader(const CellRect& rect, Visit&& visit) {
        const std::uint64_t area = std::uint64_t(rect.lastColumn - rect.firstColumn + 1) *
                                   std::uint64_t(rect.lastRow - rect.firstRow + 1);
        if (area <= singles_.size()) {
            for (std::int32_t column = rect.firstColumn; column <= rect.lastColumn; ++column) {
                for (std::int32_t row = rect.firstRow; row <= rect.lastRow; ++row) {
                    const std::uint32_t* head = singles_.find(CellMap::key(column, row));
                    if (head == nullptr) continue;
                    visitChain(*head, visit);
                }
            }
        } else {
            singles_.forEach([&](std::uint64_t cell, std::uint32_t head) {
                const auto column = static_cast<std::int32_t>(cell >> 32);
                const auto row = static_cast<std::int32_t>(cell & 0xFFFFFFFFu);
                if (column < rect.firstColumn || column > rect.lastColumn || row < rect.firstRow || row > rect.lastRow) {
                    return;
                }
                visitChain(head, visit);
            });
        }
        const auto lastColumn = std::min<std::int64_t>(rect.lastColumn, std::int64_t(columns_.size()) - 1);
        for (std::int64_t column = rect.firstColumn; column <= lastColumn; ++column) {
            forEachRange(columns_[static_cast<std::size_t>(column)], rect.firstRow, rect.lastRow, visit);
        }
    }

private:
    static constexpr std::uint32_t kNoLink = 0xFFFFFFFFu;

    // A few readers of one cell; a cell's links form a chain, newest first.
    // Several readers a link shorten the chain a lookup must follow from one
    // cache miss to the next, at the size of one link for a cell read once.
    static constexpr std::uint32_t kReadersPerLink = 3;
    struct Link {
        Reader readers[kReadersPerLink];
        std::uint32_t count;
        std::uint32_t next;
    };

    template <class Visit>
    void visitChain(std::uint32_t link, Visit& visit) {
        for (; link != kNoLink; link = links_[link].next) {
            const Link& at = links_[link];
            for (std::uint32_t i = 0; i < at.count; ++i) visit(at.readers[i]);
        }
    }
    struct RowSpan {
        std::int32_t first;
        std::int32_t last;
        Reader reader;
    };
    struct Column {
        std::vector<RowSpan> shortSpans;  // sorted by first row once `sorted`
        std::vector<RowSpan> tallSpans;
        bool sorted = true;
    };

    // Spans of the column meeting rows [first, last].
    template <class Visit>
    void forEachRange(Column& column, std::int32_t first, std::int32_t last, Visit& visit) {
        if (!column.sorted) {
            std::sort(column.shortSpans.begin(), column.shortSpans.end(),
                      [](const RowSpan& a, const RowSpan& b) { return a.first < b.first; });
            column.sorted = true;
        }
        const auto end = std::upper_bound(column.shortSpans.begin(), column.shortSpans.end(), last,
                                          [](std::int32_t row, const RowSpan& span) { return row < span.first; });
        const std::int64_t lowest = std::int64_t(first) - kShortRows;
        for (auto at = end; at != column.shortSpans.begin();) {
            --at;
            if (at->first <= lowest) break;
            if (at->last >= first) visit(at->reader);
        }
        for (const RowSpan& span : column.tallSpans) {
            if (span.first <= last && span.last >= first) visit(span.reader);
        }
    }

    CellMap singles_;  // cell -> first link
    BlockList<Link> links_;
    std::vector<Column> columns_;
    std::size_t entries_ = 0;
};

}  // namespace ExpressionParser

#endif
