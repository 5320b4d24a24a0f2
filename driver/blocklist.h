#ifndef CELLFORMULA_BLOCKLIST_H
#define CELLFORMULA_BLOCKLIST_H

// Growing storage in blocks of fixed size, for the dependency graph's large
// lists: growing never copies what is there and leaves at most one block
// unused, where a vector keeps up to as much again. Internal to the library;
// not installed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ExpressionParser {

template <class T, std::size_t kBlock = 4096>
class BlockList {
public:
    std::size_t size() const { return size_; }
    T& operator[](std::size_t at) { return blocks_[at / kBlock][at % kBlock]; }
    const T& operator[](std::size_t at) const { return blocks_[at / kBlock][at % kBlock]; }
    void push_back(const T& value) {
        if (size_ == blocks_.size() * kBlock) blocks_.push_back(std::make_unique<T[]>(kBlock));
        (*this)[size_++] = value;
    }
    void clear() {
        blocks_.clear();
        size_ = 0;
    }
    std::size_t bytes() const { return blocks_.size() * kBlock * sizeof(T) + blocks_.capacity() * sizeof(blocks_[0]); }

private:
    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t size_ = 0;
};

// Texts one after the other in blocks of 64 KB (a longer text gets a block of
// its own); a text never spans two blocks, so it reads as one view.
class TextBlocks {
public:
    // Where the text now lies, for view().
    std::uint64_t append(std::string_view text) {
        if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < text.size()) {
            blocks_.emplace_back();
            blocks_.back().reserve(std::max(kBlock, text.size()));
        }
        const std::uint64_t place = (std::uint64_t(blocks_.size() - 1) << 32) | blocks_.back().size();
        blocks_.back() += text;
        total_ += text.size();
        return place;
    }
    std::string_view view(std::uint64_t place, std::size_t length) const {
        return std::string_view(blocks_[place >> 32]).substr(place & 0xFFFFFFFFu, length);
    }
    std::size_t size() const { return total_; }
    void clear() {
        blocks_.clear();
        total_ = 0;
    }
    std::size_t bytes() const {
        std::size_t total = blocks_.capacity() * sizeof(std::string);
        for (const std::string& block : blocks_) total += block.capacity();
        return total;
    }

private:
    static constexpr std::size_t kBlock = 64 * 1024;
    std::vector<std::string> blocks_;
    std::size_t total_ = 0;
};

}  // namespace ExpressionParser

#endif
