// SPDX-License-Identifier: MIT
#include <ways/Way.h>

#include <ways/WayFolders.h>

namespace {

#ifdef PCD_BENCH_GSTREAMER
const char* const missingGStreamer = "";
#else
const char* const missingGStreamer = "libgstreamer-plugins-base1.0-dev";
#endif
#ifdef PCD_BENCH_PYTHON
const char* const missingPython = "";
#else
const char* const missingPython = "pybind11-dev and python3-dev";
#define PCD_BENCH_PYTHON "python3"
#endif

std::string inBin(const char* name) {
    return (WayFolders::bin() / name).string();
}

std::string inLib(const char* name) {
    return (WayFolders::bin() / "../lib" / name).string();
}

Way makePipe() {
    return {"pipe",
            "pcdctl stream --to - --as raw",
            {inBin("pcdctl"), "stream", "--to", "-", "--as", "raw"},
            {},
            Way::Arrival::Pixels};
}

/// With nothing of GStreamer but its core elements, which the program loads itself.
Way makeGStreamer() {
    return {"gstreamer",
            "pcdsrc ! fakesink",
            {inBin("ways_gstreamer"), inLib("gstreamer-1.0/libgstpcd.so")},
            {"GST_PLUGIN_SYSTEM_PATH_1_0=", "GST_PLUGIN_PATH_1_0=", "GST_REGISTRY_FORK=no",
             "GST_REGISTRY_1_0=" + inBin("ways_gstreamer.registry")},
            Way::Arrival::Reports,
            missingGStreamer};
}

Way makePython() {
    return {"python",
            "for frame in camera.stream()",
            {PCD_BENCH_PYTHON, inBin("ways_python.py")},
            {"PYTHONPATH=" + inBin("../python"), "LD_LIBRARY_PATH=" + inLib("")},
            Way::Arrival::Reports,
            missingPython};
}

/// The name's ending is the format; WayProgram adds the folder.
Way makeRecording(const char* name, const char* text, const char* file) {
    return {name,
            text,
            {inBin("pcdctl"), "record", "-o", WayFolders::placeholder + std::string(file)},
            {},
            Way::Arrival::Rests};
}

} // namespace

Way Way::sink() {
    return {"sink", "a frame sink", {inBin("ways_sink")}, {}, Arrival::Reports};
}

Way Way::copyingSink() {
    Way way = sink();
    way.command.emplace_back("--copy");
    return way;
}

std::vector<Way> Way::others() {
    return {makePipe(), makeGStreamer(), makePython(),
            makeRecording("ome-tiff", "pcdctl record -o run.ome.tif", "run.ome.tif"),
            makeRecording("ome-zarr", "pcdctl record -o run.ome.zarr", "run.ome.zarr")};
}
