// SPDX-License-Identifier: MIT
// A separate program, because it replaces the allocator.
#include <PCd/FakeDevice.h>
#include <PCd/frame/FrameHelpers.h>

#include <PCd/frame/PCdDipUtils.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>

namespace {

thread_local bool isRefused = false;

/// While this object exists, allocations on its thread fail.
class NoMemory {
public:
    NoMemory() { isRefused = true; }
    ~NoMemory() { isRefused = false; }
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

/// Counts the frames it is offered, without allocating.
class CountingSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame&, Kind) override {
        ++offered;
        return true;
    }

    int offered = 0;
};

/// A device with a frame that arrived before memory ran out.
class OutOfMemory : public testing::Test {
protected:
    OutOfMemory() { device.addFrameSink(sink); }

    /// Expects the ledger to count the one frame as lost for lack of memory, and as nothing else.
    void expectOneFrameWithoutMemory() const {
        QCoreApplication::processEvents();
        EXPECT_TRUE(listener.images.empty());
        EXPECT_TRUE(listener.snapshots.empty());
        EXPECT_EQ(sink->offered, 0);
        const PFrameLedger ledger = device.frameLedger();
        EXPECT_EQ(ledger.produced, 1u);
        EXPECT_EQ(ledger.count(PFrameOutcome::NoMemory), 1u);
        EXPECT_TRUE(ledger.isBalanced());
    }

    FakeDevice device;
    const FrameListener listener{device};
    const std::shared_ptr<CountingSink> sink = std::make_shared<CountingSink>();
    const PImage image = smallImage();
};

TEST_F(OutOfMemory, drops_a_live_frame_which_is_booked_as_out_of_memory) {
    {
        const NoMemory none;
        device.processFrameImage(image);
    }
    expectOneFrameWithoutMemory();
}

TEST_F(OutOfMemory, drops_a_still_which_is_booked_as_out_of_memory) {
    const PDeviceFrame frame = PCdDipUtils::imageAsDeviceFrame(image);
    {
        const NoMemory none;
        device.processSnapshot(frame);
    }
    expectOneFrameWithoutMemory();
}

} // namespace

void* operator new(std::size_t size) {
    void* const memory = isRefused ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
