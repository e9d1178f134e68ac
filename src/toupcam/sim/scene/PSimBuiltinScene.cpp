// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimSceneReader.h>

// The colour camera's link carries its full resolution at 10 frames a second with 95 % of the
// bandwidth: 5440 x 3648 bytes x 10 / 0.95 = 209 million bytes a second, one byte a pixel.
const char* PSimSceneReader::builtinText() {
    return R"json({
  "seed": 20,
  "cameras": [
    {
      "model": "Simulated-20MC",
      "displayName": "Simulated 20 MP colour camera",
      "id": "sim-20mc-1",
      "serial": "SIM20C0001",
      "flags": ["USB30", "TEC_ONOFF", "FAN", "TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL", "BANDWIDTH"],
      "resolutions": [
        {"width": 5440, "height": 3648, "fps": 12},
        {"width": 2736, "height": 1824, "fps": 30},
        {"width": 1824, "height": 1216, "fps": 60}
      ],
      "exposure": {"min": 50, "max": 15000000, "default": 10000, "auto": true, "target": 180},
      "gain": {"min": 100, "max": 500, "default": 100},
      "speedLevels": 4,
      "bits": 24,
      "pixelSizeUm": 2.4,
      "fanLevels": 3,
      "externalTrigger": {"periodMs": 500},
      "linkMegabytes": 209,
      "sensor": {"fullWell": 15000, "electronsPerCount": 58, "offset": 2, "readNoise": 3,
                 "electronsPerMs": 1390, "darkCurrent": 15},
      "source": {"kind": "specimen", "specimen": "tissue", "drift": 8}
    },
    {
      "model": "Simulated-1MM",
      "displayName": "Simulated 1.2 MP monochrome camera",
      "id": "sim-1mm-1",
      "serial": "SIM01M0001",
      "flags": ["MONO"],
      "resolutions": [
        {"width": 1280, "height": 960, "fps": 30},
        {"width": 640, "height": 480, "fps": 60}
      ],
      "exposure": {"min": 100, "max": 5000000, "default": 50000, "auto": false, "target": 50},
      "gain": {"min": 100, "max": 1600, "default": 100},
      "speedLevels": 3,
      "bits": 8,
      "pixelSizeUm": 3.75,
      "sensor": {"fullWell": 16000, "electronsPerCount": 62, "offset": 4, "readNoise": 6,
                 "electronsPerMs": 380, "darkCurrent": 8},
      "source": {"kind": "specimen", "specimen": "fluorescence", "drift": 3}
    }
  ]
})json";
}
