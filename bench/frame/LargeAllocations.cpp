// SPDX-License-Identifier: MIT
#include <frame/LargeAllocations.h>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t mostIgnored = std::size_t(64) << 10;
std::atomic<long> largeCount{0};

void countIfLarge(std::size_t size) {
    if (size > mostIgnored)
        largeCount.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

long LargeAllocations::count() {
    return largeCount.load(std::memory_order_relaxed);
}

// The C library's functions under the names that remain for programs with their own. operator new
// calls malloc().
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
    countIfLarge(size);
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
    countIfLarge(count * size);
    return __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
    countIfLarge(size);
    return __libc_realloc(memory, size);
}

__attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment,
                                                           std::size_t size) {
    countIfLarge(size);
    return __libc_memalign(alignment, size);
}

__attribute__((visibility("default"))) void* mmap(void* address, std::size_t size, int protection,
                                                  int flags, int file, off_t offset) {
    countIfLarge(size);
    const long result = syscall(SYS_mmap, address, size, protection, flags, file, offset);
    return reinterpret_cast<void*>(std::intptr_t(result)); // -1 is MAP_FAILED
}
}
