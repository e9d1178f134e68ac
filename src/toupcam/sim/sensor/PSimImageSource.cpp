// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimImageSource.h>

#include <toupcam/sim/sensor/PSimPrerenderedSource.h>
#include <toupcam/sim/sensor/PSimSensorSource.h>

std::shared_ptr<PSimImageSource> PSimImageSource::create(std::shared_ptr<const PSimCameraSpec> spec,
                                                         std::uint64_t seed) {
    using Kind = PSimSourceSpec::Kind;
    if (spec->source.kind == Kind::Patches)
        return std::make_shared<PSimPatchesSource>(std::move(spec));
    if (spec->source.kind == Kind::Ring)
        return std::make_shared<PSimRingSource>(std::move(spec));
    return std::make_shared<PSimSensorSource>(std::move(spec), seed);
}
