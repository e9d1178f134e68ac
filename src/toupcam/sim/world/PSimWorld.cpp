// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimWorld.h>

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/scene/PSimJsonObject.h>
#include <toupcam/sim/scene/PSimSceneReader.h>

#include <QFile>
#include <QtGlobal>
#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr qsizetype keptSerial = 10; // bytes that drivers keep of a serial number

} // namespace

PSimWorld& PSimWorld::instance() {
    static auto* const world = new PSimWorld;
    return *world;
}

PSimWorld::PSimWorld() {
    const QByteArray journal = qgetenv("TOUPCAM_SIM_JOURNAL");
    if (!journal.isEmpty())
        m_journal.copyToFile(journal.toStdString());
    if (qEnvironmentVariableIsEmpty("TOUPCAM_SIM_SCENE"))
        install(PSimSceneReader::builtin());
    else
        loadFromEnvironment();
}

// If the scene cannot be read, there are no cameras, rather than those of another scene.
void PSimWorld::loadFromEnvironment() {
    const QByteArray path = qgetenv("TOUPCAM_SIM_SCENE");
    try {
        install(PSimSceneReader::readFile(QFile::decodeName(path)));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simulated SDK: scene \"%s\": %s\n", path.constData(), error.what());
        install(PSimScene());
    }
}

void PSimWorld::install(const PSimScene& scene) {
    const auto plan = std::make_shared<PSimFaultPlan>(scene, *this);
    Cameras cameras;
    for (const PSimCameraSpec& spec : scene.cameras)
        cameras.push_back(std::make_shared<PSimCamera>(
            spec, PSimRandom::mix(scene.seed) + cameras.size(), plan->observer(spec.id)));
    {
        const std::lock_guard lock(m_mutex);
        m_cameras = std::move(cameras);
        m_plan = plan;
    }
    plan->start();
}

void PSimWorld::unplugAll(const std::function<void()>& afterEach) {
    std::shared_ptr<PSimFaultPlan> plan;
    Cameras cameras;
    {
        const std::lock_guard lock(m_mutex);
        plan = m_plan;
        cameras = m_cameras;
    }
    plan->stop();
    for (const std::shared_ptr<PSimCamera>& camera : cameras)
        camera->unplug(afterEach);
}

void PSimWorld::load(const PSimScene& scene) {
    const std::lock_guard loading(m_loading);
    unplugAll([this] { m_hotPlug.notify(); });
    m_faults.clear();
    install(scene);
    m_hotPlug.notify();
}

void PSimWorld::reset() {
    const std::lock_guard loading(m_loading);
    unplugAll([] {}); // a fresh start, not an event for clients
    m_faults.clear();
    m_journal.clear();
    {
        const std::lock_guard lock(m_mutex);
        m_numbers.clear();
    }
    install(PSimSceneReader::builtin());
}

std::vector<ToupcamDeviceV2> PSimWorld::enumerate() const {
    const std::lock_guard lock(m_mutex);
    std::vector<ToupcamDeviceV2> result;
    for (const std::shared_ptr<PSimCamera>& camera : m_cameras) {
        if (camera->isPlugged())
            result.push_back(camera->record());
    }
    return result;
}

std::shared_ptr<PSimCamera> PSimWorld::camera(const QByteArray& id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_cameras.begin(), m_cameras.end(),
                                    [&id](const auto& camera) { return camera->spec().id == id; });
    return found == m_cameras.end() ? nullptr : *found;
}

HToupcam PSimWorld::open(const QByteArray& id) {
    const std::shared_ptr<PSimCamera> requested = camera(id);
    const std::shared_ptr<PSimSession> session = requested ? requested->open() : nullptr;
    if (!session)
        return nullptr;
    const std::lock_guard lock(m_mutex);
    const HToupcam handle = &m_tokens.emplace_back();
    m_open[handle] = {requested, session};
    m_numbers.emplace(handle, unsigned(m_numbers.size()) + 1);
    return handle;
}

bool PSimWorld::close(HToupcam handle) {
    Opened opened;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_open.find(handle);
        if (found == m_open.end())
            return false;
        opened = found->second;
        m_open.erase(found);
    }
    // Unlocked: waits for callbacks, which may call the SDK. The camera counts as open until then.
    opened.session->stream().close();
    opened.camera->closed(opened.session);
    return true;
}

std::shared_ptr<PSimSession> PSimWorld::session(HToupcam handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_open.find(handle);
    return found == m_open.end() ? nullptr : found->second.session;
}

std::size_t PSimWorld::openHandles() const {
    const std::lock_guard lock(m_mutex);
    return m_open.size();
}

std::string PSimWorld::handleName(HToupcam handle) const {
    if (!handle)
        return "h0";
    const std::lock_guard lock(m_mutex);
    const auto found = m_numbers.find(handle);
    return found == m_numbers.end() ? "h?" : "h" + std::to_string(found->second);
}

bool PSimWorld::unplug(const QByteArray& id) {
    const std::shared_ptr<PSimCamera> found = camera(id);
    return found && found->unplug([this] { m_hotPlug.notify(); });
}

bool PSimWorld::plug(const QByteArray& id) {
    const std::shared_ptr<PSimCamera> found = camera(id);
    if (!found || !found->plug())
        return false;
    m_hotPlug.notify();
    return true;
}

bool PSimWorld::setPlugged(const QByteArray& serial, bool plugged) {
    Cameras cameras;
    {
        const std::lock_guard lock(m_mutex);
        cameras = m_cameras;
    }
    const auto isExact = [&](const auto& camera) { return camera->spec().serial == serial; };
    const bool isWhole = std::any_of(cameras.begin(), cameras.end(), isExact);
    return !serial.isEmpty() &&
           std::any_of(cameras.begin(), cameras.end(), [&](const auto& camera) {
               const PSimCameraSpec& spec = camera->spec();
               const bool isMeant =
                   isWhole ? isExact(camera)
                           : serial.size() >= keptSerial && spec.serial.startsWith(serial);
               return isMeant && (plugged ? plug(spec.id) : unplug(spec.id));
           });
}

bool PSimWorld::hold(const QByteArray& id, bool held) {
    const std::shared_ptr<PSimCamera> found = camera(id);
    if (found)
        found->hold(held);
    return found != nullptr;
}

bool PSimWorld::pushRaw(const QByteArray& id, const void* data, const BITMAPINFOHEADER* header,
                        int isSnapshot) {
    const std::shared_ptr<PSimCamera> found = camera(id);
    return found && found->pushRaw(data, header, isSnapshot);
}

bool PSimWorld::fireEvent(const QByteArray& id, unsigned code) {
    const std::shared_ptr<PSimCamera> found = camera(id);
    return found && found->fireEvent(code);
}
