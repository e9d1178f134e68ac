// SPDX-License-Identifier: MIT
#include <PDip/PImage.h>
#include <RatioReporter.h>

#include <cstring>
#include <memory>
#include <vector>

// A steady stream of 60 MB frames: the cost of copying one into an image, compared with the copy
// alone.

namespace {

const PImageHeader frame(5440, 3648, PDIP::ColorFormat::Bgr);

std::vector<unsigned char> cameraBuffer() {
    return std::vector<unsigned char>(frame.dataSize(), 0x55);
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * std::int64_t(frame.dataSize()));
}

void memcpyBetweenWarmBuffers(benchmark::State& state) {
    const std::vector<unsigned char> camera = cameraBuffer();
    std::vector<unsigned char> target(camera.size(), 1);
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(target.data(), camera.data(), camera.size());
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void copyIntoPoolImage(benchmark::State& state) {
    const std::vector<unsigned char> camera = cameraBuffer();
    for ([[maybe_unused]] auto _ : state) {
        PImage image;
        if (!image.create(frame) || !image.set(camera.data(), frame))
            state.SkipWithError("no memory for a frame");
        benchmark::DoNotOptimize(image);
    }
    countBytes(state);
}

void copyIntoFreshMemory(benchmark::State& state) {
    const std::vector<unsigned char> camera = cameraBuffer();
    for ([[maybe_unused]] auto _ : state) {
        const std::unique_ptr<unsigned char[]> fresh(new unsigned char[camera.size()]);
        std::memcpy(fresh.get(), camera.data(), camera.size());
        benchmark::DoNotOptimize(fresh.get());
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

} // namespace

BENCHMARK(memcpyBetweenWarmBuffers)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(copyIntoPoolImage)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(copyIntoFreshMemory)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return runWithRatios(argc, argv, "memcpyBetweenWarmBuffers");
}
