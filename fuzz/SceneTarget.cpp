// SPDX-License-Identifier: MIT
// A scene file of the simulated cameras.
#include <FuzzSupport.h>

#include <toupcam/sim/scene/PSimJsonObject.h>
#include <toupcam/sim/scene/PSimSceneReader.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const PSimScene scene = PSimSceneReader::read(Fuzz::toBytes(data, size), Fuzz::folder());
        for (const PSimCameraSpec& camera : scene.cameras)
            Fuzz::require(!camera.resolutions.empty(), "a camera has a resolution");
    } catch (const PSimSceneError& error) {
        Fuzz::require(*error.what() != '\0', "an error has a text");
    }
    return 0;
}
