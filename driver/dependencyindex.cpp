#include "dependencyindex.h"

namespace ExpressionParser {

void DependencyIndex::add(const CellRect& rect, Reader reader) {
    if (rect.firstColumn == rect.lastColumn && rect.firstRow == rect.lastRow) {
        bool fresh = false;
        std::uint32_t& head = singles_.emplace(CellMap::key(rect.firstColumn, rect.firstRow), kNoLink, fresh);
        if (head != kNoLink && links_[head].count < kReadersPerLink) {
            Link& link = links_[head];
            link.readers[link.count++] = reader;
        } else {
            links_.push_back(Link{{reader, {}, {}}, 1, head});
            head = static_cast<std::uint32_t>(links_.size() - 1);
        }
        ++entries_;
        return;
    }
    if (columns_.size() <= static_cast<std::size_t>(rect.lastColumn)) columns_.resize(std::size_t(rect.lastColumn) + 1);
    const bool tall = std::int64_t(rect.lastRow) - rect.firstRow + 1 > kShortRows;
    for (std::int32_t at = rect.firstColumn; at <= rect.lastColumn; ++at) {
        Column& column = columns_[static_cast<std::size_t>(at)];
        if (tall) {
            column.tallSpans.push_back(RowSpan{rect.firstRow, rect.lastRow, reader});
        } else {
            if (!column.shortSpans.empty() && column.shortSpans.back().first > rect.firstRow) column.sorted = false;
            column.shortSpans.push_back(RowSpan{rect.firstRow, rect.lastRow, reader});
        }
        ++entries_;
    }
}

void DependencyIndex::clear() {
    singles_.clear();
    links_.clear();
    columns_.clear();
    entries_ = 0;
}

std::size_t DependencyIndex::bytes() const {
    std::size_t total = singles_.bytes() + links_.bytes() + columns_.capacity() * sizeof(Column);
    for (const Column& column : columns_) {
        total += (column.shortSpans.capacity() + column.tallSpans.capacity()) * sizeof(RowSpan);
    }
    return total;
}

}  // namespace ExpressionParser
