#include "evaluation.h"

#include <ucontext.h>

#include <cstdint>
#include <exception>
#include <memory>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CELLFORMULA_ASAN 1
#endif
#if __has_feature(thread_sanitizer)
#define CELLFORMULA_TSAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CELLFORMULA_ASAN 1
#endif
#if defined(__SANITIZE_THREAD__)
#define CELLFORMULA_TSAN 1
#endif

#ifdef CELLFORMULA_ASAN
#include <sanitizer/common_interface_defs.h>
#endif
#ifdef CELLFORMULA_TSAN
#include <sanitizer/tsan_interface.h>
#endif

namespace cellformula {

namespace {

// Each segment keeps a margin below its budget for the frames between two
// checks and for host operations that run on it.
constexpr std::size_t kSegmentSize = 8 * 1024 * 1024;
constexpr std::size_t kSegmentMargin = 256 * 1024;

}  // namespace

// A stack segment for one switch. It comes from the ordinary heap: once a
// first deep call has freed one, the allocator hands the same memory, already
// touched, to the next, where a fresh mapping would fault in every page again.
class StackSegment {
public:
    StackSegment() : memory_(new char[kSegmentSize]) {}

    char* bottom() const { return memory_.get(); }
    std::size_t size() const { return kSegmentSize; }

    // The next segment the call has finished with.
    std::unique_ptr<StackSegment> next;

private:
    std::unique_ptr<char[]> memory_;
};

namespace {

// Everything the code on the segment needs, reached through one pointer
// that makecontext passes as two integers.
struct SegmentRun {
    void (*body)(void*);
    void* argument;
    std::exception_ptr failure;
    ucontext_t caller;
    ucontext_t callee;
#ifdef CELLFORMULA_ASAN
    const void* callerBottom = nullptr;
    std::size_t callerSize = 0;
#endif
#ifdef CELLFORMULA_TSAN
    void* callerFiber = nullptr;
    void* segmentFiber = nullptr;
#endif
};

void runSegment(unsigned int high, unsigned int low) {
    auto* run = reinterpret_cast<SegmentRun*>((static_cast<std::uintptr_t>(high) << 32) | low);
#ifdef CELLFORMULA_ASAN
    __sanitizer_finish_switch_fiber(nullptr, &run->callerBottom, &run->callerSize);
#endif
    try {
        run->body(run->argument);
    } catch (...) {
        run->failure = std::current_exception();
    }
#ifdef CELLFORMULA_ASAN
    __sanitizer_start_switch_fiber(nullptr, run->callerBottom, run->callerSize);
#endif
#ifdef CELLFORMULA_TSAN
    __tsan_switch_to_fiber(run->callerFiber, 0);
#endif
    // Returning resumes the caller through uc_link.
}

}  // namespace

const std::string* CallMemo::text(const ASTNode* node) const {
    if (!texts_) return nullptr;
    const auto found = texts_->find(node);
    return found == texts_->end() ? nullptr : &found->second;
}

void CallMemo::keepText(const ASTNode* node, const std::string& text) {
    if (!texts_) texts_ = std::make_unique<std::unordered_map<const ASTNode*, std::string>>();
    (*texts_)[node] = text;
}

void SpareSegments::releaseAll() {
    // One after another, as deleting a long chain through its links would recurse.
    while (first_ != nullptr) take();
}

std::unique_ptr<StackSegment> SpareSegments::take() {
    if (first_ == nullptr) return std::make_unique<StackSegment>();
    std::unique_ptr<StackSegment> segment(first_);
    first_ = segment->next.release();
    return segment;
}

void SpareSegments::give(std::unique_ptr<StackSegment> segment) {
    segment->next.reset(first_);
    first_ = segment.release();
}

void Evaluation::runOnFreshSegment(void (*body)(void*), void* argument) {
    std::unique_ptr<StackSegment> taken = spares_.take();
    StackSegment& segment = *taken;
    SegmentRun run{body, argument, nullptr, {}, {}};
    const std::uintptr_t savedFloor = stackFloor_;
    stackFloor_ = reinterpret_cast<std::uintptr_t>(segment.bottom()) + kSegmentMargin;
    setFastFloors();

    getcontext(&run.callee);
    run.callee.uc_stack.ss_sp = segment.bottom();
    run.callee.uc_stack.ss_size = segment.size();
    run.callee.uc_link = &run.caller;
    const auto address = reinterpret_cast<std::uintptr_t>(&run);
    makecontext(&run.callee, reinterpret_cast<void (*)()>(&runSegment), 2,
                static_cast<unsigned int>(address >> 32), static_cast<unsigned int>(address & 0xFFFFFFFFu));
#ifdef CELLFORMULA_TSAN
    run.callerFiber = __tsan_get_current_fiber();
    run.segmentFiber = __tsan_create_fiber(0);
    __tsan_switch_to_fiber(run.segmentFiber, 0);
#endif
#ifdef CELLFORMULA_ASAN
    void* fakeStack = nullptr;
    __sanitizer_start_switch_fiber(&fakeStack, segment.bottom(), segment.size());
#endif
    swapcontext(&run.caller, &run.callee);
#ifdef CELLFORMULA_ASAN
    __sanitizer_finish_switch_fiber(fakeStack, nullptr, nullptr);
#endif
#ifdef CELLFORMULA_TSAN
    __tsan_destroy_fiber(run.segmentFiber);
#endif
    stackFloor_ = savedFloor;
    setFastFloors();
    spares_.give(std::move(taken));
    if (run.failure) std::rethrow_exception(run.failure);
}

}  // namespace cellformula
