// SPDX-License-Identifier: MIT
// A separate program, because it replaces the allocator.
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/picture/PPngEncoder.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

namespace {

thread_local std::size_t refusedFrom = std::numeric_limits<std::size_t>::max();

/// While this object exists, its thread gets no block of this size or a larger one.
class NoLargeMemory {
public:
    explicit NoLargeMemory(std::size_t size) { refusedFrom = size; }
    ~NoLargeMemory() { refusedFrom = std::numeric_limits<std::size_t>::max(); }
    NoLargeMemory(const NoLargeMemory&) = delete;
    NoLargeMemory& operator=(const NoLargeMemory&) = delete;
};

void* allocateOrFail(std::size_t size) {
    return size >= refusedFrom ? nullptr : std::malloc(size);
}

QImage greyPicture(int width) {
    QImage image(width, 4, QImage::Format_Grayscale8);
    image.fill(100);
    return image;
}

} // namespace

TEST(PngMemory, a_picture_is_encoded_while_there_is_memory) {
    EXPECT_FALSE(PPngEncoder::encode(greyPicture(8), {}, PPngEncoder::Content::Frame).isEmpty());
}

TEST(PngMemory, rows_that_libpng_has_no_memory_for_are_no_problem_of_the_format) {
    const QImage wide = greyPicture(500'000);
    const NoLargeMemory none(500'000);
    EXPECT_THROW(PPngEncoder::encode(wide, {}, PPngEncoder::Content::Frame), std::bad_alloc);
}

TEST(PngMemory, a_compressor_that_libpng_has_no_memory_for_is_no_problem_of_the_format) {
    const NoLargeMemory none(30'000);
    EXPECT_THROW(PPngEncoder::encode(greyPicture(8), {}, PPngEncoder::Content::Frame),
                 std::bad_alloc);
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
