#ifndef CELLFORMULA_CELLMAP_H
#define CELLFORMULA_CELLMAP_H

// A map from a cell to a 32-bit value in one flat array (open addressing with
// linear probing): no allocation per entry, 12 bytes a slot, between half and
// four fifths of the slots in use. Any number of slots works, so the array
// grows by 1.6 rather than doubling. Internal to the library; not installed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ExpressionParser {

class CellMap {
public:
    static std::uint64_t key(std::int32_t column, std::int32_t row) {
        return (std::uint64_t(std::uint32_t(column)) << 32) | std::uint32_t(row);
    }

    // The value of the cell, or null.
    std::uint32_t* find(std::uint64_t cell) {
        const std::size_t at = locate(cell);
        return at == kNone ? nullptr : &slots_[at].value;
    }
    const std::uint32_t* find(std::uint64_t cell) const {
        const std::size_t at = locate(cell);
        return at == kNone ? nullptr : &slots_[at].value;
    }

    // The cell's value, inserted as `fresh` when the cell had none; `inserted` tells which.
    std::uint32_t& emplace(std::uint64_t cell, std::uint32_t fresh, bool& inserted) {
        if (5 * (used_ + 1) > 4 * slots_.size()) grow();
        std::size_t reuse = kNone;
        for (std::size_t at = home(cell);; at = next(at)) {
            Slot& slot = slots_[at];
            const std::uint64_t held = slot.key();
            if (held == cell) {
                inserted = false;
                return slot.value;
            }
            if (held == kRemoved && reuse == kNone) reuse = at;
            if (held == kEmpty) {
                if (reuse == kNone) {
                    reuse = at;
                    ++used_;
                }
                break;
            }
        }
        slots_[reuse] = Slot::of(cell, fresh);
        ++size_;
        inserted = true;
        return slots_[reuse].value;
    }

    bool erase(std::uint64_t cell) {
        const std::size_t at = locate(cell);
        if (at == kNone) return false;
        slots_[at] = Slot::of(kRemoved, 0);  // the slot stays taken for the probes that pass it
        --size_;
        return true;
    }

    template <class Visit>
    void forEach(Visit&& visit) const {
        for (const Slot& slot : slots_) {
            if (slot.key() < kRemoved) visit(slot.key(), slot.value);
        }
    }

    std::size_t size() const { return size_; }
    std::size_t bytes() const { return slots_.capacity() * sizeof(Slot); }
    void clear() {
        slots_.clear();
        size_ = used_ = 0;
    }

private:
    static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};
    static constexpr std::uint64_t kRemoved = kEmpty - 1;
    static constexpr std::size_t kNone = ~std::size_t{0};

    // The key in two halves keeps the slot at 12 bytes.
    struct Slot {
        std::uint32_t high;
        std::uint32_t low;
        std::uint32_t value;
        std::uint64_t key() const { return (std::uint64_t(high) << 32) | low; }
        static Slot of(std::uint64_t key, std::uint32_t value) {
            return Slot{std::uint32_t(key >> 32), std::uint32_t(key), value};
        }
    };

    std::size_t locate(std::uint64_t cell) const {
        if (slots_.empty()) return kNone;
        for (std::size_t at = home(cell);; at = next(at)) {
            const std::uint64_t held = slots_[at].key();
            if (held == cell) return at;
            if (held == kEmpty) return kNone;
        }
    }
    std::size_t next(std::size_t at) const { return at + 1 == slots_.size() ? 0 : at + 1; }
    // The hash's top 32 bits scaled to the number of slots.
    std::size_t home(std::uint64_t cell) const {
        return static_cast<std::size_t>((((cell * 0x9E3779B97F4A7C15ULL) >> 32) * slots_.size()) >> 32);
    }

    // Places every entry again in twice as many slots as entries (fewer
    // than before when removed slots took the room).
    void grow() {
        std::vector<Slot> old(std::max<std::size_t>(16, 2 * (size_ + 1)), Slot::of(kEmpty, 0));
        old.swap(slots_);
        used_ = size_;
        for (const Slot& slot : old) {
            if (slot.key() >= kRemoved) continue;
            std::size_t at = home(slot.key());
            while (slots_[at].key() != kEmpty) at = next(at);
            slots_[at] = slot;
        }
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;  // entries
    std::size_t used_ = 0;  // entries and removed slots
};

}  // namespace ExpressionParser

#endif
