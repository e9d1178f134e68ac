// SPDX-License-Identifier: MIT
// Replaces the allocator: for a program of its own.
#include <apps/common/RefusedMemory.h>

#include <cstdlib>
#include <limits>
#include <new>

namespace {

thread_local std::size_t refusedFrom = std::numeric_limits<std::size_t>::max();
thread_local bool isCounting = false;
thread_local int blocksLeft = 0; // below zero: the refusal has happened

bool isRefused(std::size_t size) {
    if (isCounting && blocksLeft >= 0 && blocksLeft-- == 0)
        return true;
    return size >= refusedFrom;
}

void* allocateOrFail(std::size_t size) {
    return isRefused(size) ? nullptr : std::malloc(size);
}

} // namespace

NoLargeMemory::NoLargeMemory(std::size_t size) {
    refusedFrom = size;
}

NoLargeMemory::~NoLargeMemory() {
    refusedFrom = std::numeric_limits<std::size_t>::max();
}

OneRefusal::OneRefusal(int granted) {
    blocksLeft = granted;
    isCounting = true;
}

OneRefusal::~OneRefusal() {
    isCounting = false;
}

bool OneRefusal::hasHappened() {
    return blocksLeft < 0;
}

void* operator new(std::size_t size) {
    void* const memory = allocateOrFail(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocateOrFail(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
