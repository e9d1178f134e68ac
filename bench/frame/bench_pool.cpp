// SPDX-License-Identifier: MIT
#include <PDip/PImage.h>
#include <figure/FigureProgram.h>
#include <figure/Stopwatch.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

// A steady stream of 60 MB frames: the cost of copying one into an image from the pool, compared
// with the copy alone.

namespace {

const PImageHeader frame(5440, 3648, PDIP::ColorFormat::Bgr);

struct Buffers {
    std::vector<unsigned char> camera = std::vector<unsigned char>(frame.dataSize(), 0x55);
    std::vector<unsigned char> target = std::vector<unsigned char>(frame.dataSize(), 1);
};

void copyIntoPoolImage(const Buffers& buffers) {
    PImage image;
    if (!image.create(frame) || !image.set(buffers.camera.data(), frame))
        throw std::runtime_error("no memory for a frame");
    benchmark::DoNotOptimize(image);
}

FigurePair preparePool() {
    const auto buffers = std::make_shared<Buffers>();
    return {[=] { return Stopwatch::wallMs([&] { copyIntoPoolImage(*buffers); }); },
            [=] {
                return Stopwatch::wallMs([&] {
                    std::memcpy(buffers->target.data(), buffers->camera.data(),
                                buffers->camera.size());
                });
            }};
}

} // namespace

int main(int argc, char** argv) {
    FigureProgram::add(
        {"pool/20MP-24bit", "copy into a pool image", "memcpy into warm memory", "ms", 1.03},
        preparePool);
    return FigureProgram::run(argc, argv);
}
