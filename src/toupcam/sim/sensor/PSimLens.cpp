// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimLens.h>

#include <toupcam/sim/sensor/PSimReadyLens.h>
#include <toupcam/sim/sensor/PSimSensorLens.h>

std::shared_ptr<PSimLens> PSimLens::create(std::shared_ptr<const PSimCameraSpec> spec,
                                           std::uint64_t seed) {
    using Kind = PSimSourceSpec::Kind;
    if (spec->source.kind == Kind::Patches)
        return std::make_shared<PSimPatchesLens>(std::move(spec));
    if (spec->source.kind == Kind::Ring)
        return std::make_shared<PSimRingLens>(std::move(spec));
    return std::make_shared<PSimSensorLens>(std::move(spec), seed);
}
