// SPDX-License-Identifier: MIT
#include <toupcam/sim/processing/PSimProcessor.h>

#include <toupcam/sim/processing/PSimBinnedRows.h>
#include <toupcam/sim/processing/PSimOrienter.h>
#include <toupcam/sim/processing/PSimToneStage.h>

namespace {

void processRows(PSimRows& rows, const PSimShot& shot, PSimPicture& picture) {
    const unsigned channels = picture.bits / 8;
    const PSimSize size = shot.geometry.binnedSize();
    const PSimToneStage toneStage(shot.imageSettings, channels, shot.blueFirst);
    PSimMeter meter(size, channels);
    PSimOrienter orienter(shot.geometry.orientation(), size, picture);
    for (unsigned y = 0; y < size.height; ++y) {
        std::uint8_t* const line = orienter.line(y);
        rows.next(line);
        // Before the tone stage, which must not affect auto-exposure.
        meter.add(y, line);
        toneStage.apply(line, size.width);
        orienter.written(y);
    }
    picture.means = meter.means(shot.blueFirst);
}

} // namespace

void simProcess(PSimRows& sensor, unsigned bits, const PSimShot& shot, PSimPicture& picture) {
    const PSimSize size = shot.geometry.finalSize();
    picture.width = size.width;
    picture.height = size.height;
    picture.bits = bits;
    picture.blueFirst = shot.blueFirst;
    if (shot.geometry.binning == 1) {
        processRows(sensor, shot, picture);
    } else {
        PSimBinnedRows binned(sensor, shot.geometry, bits / 8);
        processRows(binned, shot, picture);
    }
}
