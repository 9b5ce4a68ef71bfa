#include <atomic>
#include <cstddef>

#include "BenchInputs.h"

// ---------------------------------------------------------------------------
// Counting allocator: malloc itself is interposed, so that operator new (ours)
// and the C allocations of libdvbv5 are counted alike.
// ---------------------------------------------------------------------------
namespace {
std::atomic<unsigned long long> gAllocations{0};
std::atomic<unsigned long long> gAllocatedBytes{0};
}  // namespace

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* malloc(size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(n, std::memory_order_relaxed);
    return __libc_malloc(n);
}
void* calloc(size_t count, size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(count * n, std::memory_order_relaxed);
    return __libc_calloc(count, n);
}
void* realloc(void* p, size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(n, std::memory_order_relaxed);
    return __libc_realloc(p, n);
}

// The library's failure messages are not part of what is measured.
int __android_log_print(int, const char*, const char*, ...) {
    return 0;
}
}

namespace sarnbench {

unsigned long long allocatorCalls() {
    return gAllocations.load(std::memory_order_relaxed);
}
unsigned long long allocatedBytes() {
    return gAllocatedBytes.load(std::memory_order_relaxed);
}

}  // namespace sarnbench
