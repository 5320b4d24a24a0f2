#ifndef CELLFORMULA_BUFFER_H
#define CELLFORMULA_BUFFER_H

// A growing array that keeps its first few elements in place, so that a
// short formula is evaluated without touching the heap. Never installed.
#include <cstddef>
#include <utility>
#include <vector>

namespace cellformula {

template <typename T, std::size_t InPlace>
class Buffer {
public:
    Buffer() = default;
    explicit Buffer(std::size_t size) { resize(size); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return size_; }
    T& operator[](std::size_t i) { return data_[i]; }
    const T& operator[](std::size_t i) const { return data_[i]; }
    T& back() { return data_[size_ - 1]; }

    void push_back(const T& value) {
        if (size_ == capacity_) grow(2 * size_);
        data_[size_++] = value;
    }
    void pop_back(std::size_t count = 1) { size_ -= count; }
    void resize(std::size_t size) {
        if (size > capacity_) grow(size);
        size_ = size;
    }

private:
    [[gnu::noinline]] void grow(std::size_t capacity) {
        std::vector<T> larger(capacity);
        for (std::size_t i = 0; i < size_; ++i) larger[i] = std::move(data_[i]);
        heap_.swap(larger);
        data_ = heap_.data();
        capacity_ = capacity;
    }

    // Left uninitialised for plain types: a run writes each element before reading it.
    T inPlace_[InPlace];
    std::vector<T> heap_;
    T* data_ = inPlace_;
    std::size_t size_ = 0;
    std::size_t capacity_ = InPlace;
};

}  // namespace cellformula

#endif
