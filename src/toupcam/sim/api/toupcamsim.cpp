// SPDX-License-Identifier: MIT
#include <toupcam/sim/api/toupcamsim.h>

#include <toupcam/sim/hook/PSimHook.h>
#include <toupcam/sim/scene/PSimSceneReader.h>
#include <toupcam/sim/world/PSimWorld.h>

#include <QFile>
#include <algorithm>
#include <cstring>

namespace {

QByteArray toId(const char* camId) {
    return camId ? QByteArray(camId) : QByteArray();
}

// No exception may leave a C function; a call that throws counts as failed.
template <typename Work>
int done(const Work& work) noexcept {
    try {
        return work() ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

template <typename Work>
void attempt(const Work& work) noexcept {
    done([&work] {
        work();
        return true;
    });
}

/// Null, or what is wrong with the scene; valid until the next call on this thread.
template <typename Read>
const char* loadScene(const Read& read) noexcept {
    thread_local std::string complaint;
    try {
        PSimWorld::instance().load(read());
        return nullptr;
    } catch (const std::exception& error) {
        complaint = error.what();
        return complaint.c_str();
    }
}

} // namespace

const char* ToupcamSim_version(void) {
    return "simulated 0.1.0";
}

const char* ToupcamSim_loadScene(const char* json) {
    return loadScene([json] { return PSimSceneReader::read(toId(json)); });
}

const char* ToupcamSim_loadSceneFile(const char* path) {
    return loadScene([path] { return PSimSceneReader::readFile(QFile::decodeName(path)); });
}

void ToupcamSim_reset(void) {
    attempt([] { PSimWorld::instance().reset(); });
}

int ToupcamSim_unplug(const char* camId) {
    return done([camId] { return PSimWorld::instance().unplug(toId(camId)); });
}

int ToupcamSim_plug(const char* camId) {
    return done([camId] { return PSimWorld::instance().plug(toId(camId)); });
}

int ToupcamSim_setPlugged(const char* serial, int plugged) {
    return done([&] { return PSimWorld::instance().setPlugged(toId(serial), plugged != 0); });
}

void ToupcamSim_fireHotPlug(void) {
    attempt([] { PSimWorld::instance().hotPlug().notify(); });
}

void ToupcamSim_failCall(const char* function, unsigned skip, unsigned count, HRESULT result) {
    attempt(
        [&] { PSimWorld::instance().faults().fail(function, std::nullopt, skip, count, result); });
}

void ToupcamSim_failOption(const char* function, unsigned option, unsigned skip, unsigned count,
                           HRESULT result) {
    attempt([&] { PSimWorld::instance().faults().fail(function, option, skip, count, result); });
}

void ToupcamSim_delayCall(const char* function, unsigned ms) {
    attempt([&] { PSimWorld::instance().faults().delay(function, ms); });
}

void ToupcamSim_reportSize(const char* function, unsigned width, unsigned height) {
    attempt([&] { PSimWorld::instance().faults().reportSize(function, {width, height}); });
}

void ToupcamSim_answerOption(unsigned option, int value) {
    attempt([&] { PSimWorld::instance().faults().answerOption(option, value); });
}

void ToupcamSim_setHook(PTOUPCAMSIM_HOOK hook) {
    PSimHook::set(hook);
}

unsigned ToupcamSim_openHandles(void) {
    return unsigned(PSimWorld::instance().openHandles());
}

void ToupcamSim_clearFaults(void) {
    attempt([] { PSimWorld::instance().faults().clear(); });
}

int ToupcamSim_holdFrames(const char* camId, int hold) {
    return done([&] { return PSimWorld::instance().hold(toId(camId), hold != 0); });
}

int ToupcamSim_fireTrigger(const char* camId) {
    return done([camId] {
        const std::shared_ptr<PSimCamera> camera = PSimWorld::instance().camera(toId(camId));
        return camera && camera->signal();
    });
}

unsigned long long ToupcamSim_missedTriggers(const char* camId) {
    unsigned long long missed = 0;
    attempt([&] {
        if (const std::shared_ptr<PSimCamera> camera = PSimWorld::instance().camera(toId(camId)))
            missed = camera->missedSignals();
    });
    return missed;
}

int ToupcamSim_pushRaw(const char* camId, const void* data, const BITMAPINFOHEADER* header,
                       int isSnapshot) {
    return done(
        [&] { return PSimWorld::instance().pushRaw(toId(camId), data, header, isSnapshot); });
}

int ToupcamSim_fireEvent(const char* camId, unsigned event) {
    return done([&] { return PSimWorld::instance().fireEvent(toId(camId), event); });
}

int ToupcamSim_frameCount(const char* camId, unsigned long long* produced,
                          unsigned long long* delivered) {
    return done([&] {
        const std::shared_ptr<PSimCamera> camera = PSimWorld::instance().camera(toId(camId));
        if (!camera)
            return false;
        const PSimFrameCounts counts = camera->counts();
        if (produced)
            *produced = counts.produced;
        if (delivered)
            *delivered = counts.delivered;
        return true;
    });
}

unsigned ToupcamSim_journal(unsigned index, char* line, unsigned size) {
    attempt([&] {
        if (!line || size == 0)
            return;
        const std::string text = PSimWorld::instance().journal().line(index).substr(0, size - 1);
        std::memcpy(line, text.c_str(), text.size() + 1);
    });
    return unsigned(PSimWorld::instance().journal().size());
}

void ToupcamSim_clearJournal(void) {
    attempt([] { PSimWorld::instance().journal().clear(); });
}
