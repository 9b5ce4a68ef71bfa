// The test executable replaces the global operator new and delete (the
// library's allocations come here as well) and counts the blocks alive, so
// that a test can see a table give back everything it took.
#include <atomic>
#include <cstdlib>
#include <new>

#include "SectionParse.h"

namespace {
std::atomic<long> alive{0};
}

long heapBlocksAlive() {
    return alive.load();
}

void* operator new(std::size_t size) {
    void* p = std::malloc(size == 0 ? 1 : size);
    if (p == nullptr)
        throw std::bad_alloc();
    ++alive;
    return p;
}

void operator delete(void* p) noexcept {
    if (p == nullptr)
        return;
    --alive;
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
