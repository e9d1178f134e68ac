// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimCamera.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <utility>

namespace {

struct ModelRecord {
    QByteArray name;
    ToupcamModelV2 model{};
};

// Never freed, by design: clients keep pointers to model records for the life of the process.
ModelRecord& newModelRecord() {
    static std::mutex mutex; // cameras are made on any thread that reads a scene
    static auto* const records = new std::deque<ModelRecord>;
    const std::lock_guard lock(mutex);
    return records->emplace_back();
}

const ToupcamModelV2* makeModel(const PSimCameraSpec& spec) {
    ModelRecord& record = newModelRecord();
    record.name = spec.model.value_or(QByteArray());
    ToupcamModelV2& model = record.model;
    model.name = spec.model ? record.name.constData() : nullptr;
    model.flag = spec.flags;
    model.maxspeed = spec.speedLevels - 1;
    model.preview = unsigned(spec.resolutions.size());
    model.still = model.preview;
    model.maxfanspeed = spec.fanLevels;
    model.xpixsz = spec.pixelSize;
    model.ypixsz = spec.pixelSize;
    for (std::size_t i = 0; i < spec.resolutions.size(); ++i)
        model.res[i] = {spec.resolutions[i].width, spec.resolutions[i].height};
    return &model;
}

// Fills a record's text field; one that fills all of it has no NUL, as in the maker's records.
template <std::size_t Size>
void fill(char (&field)[Size], const QByteArray& text) {
    const std::size_t length = std::min(Size, std::size_t(text.size()));
    std::memcpy(field, text.constData(), length);
}

} // namespace

PSimCamera::PSimCamera(const PSimCameraSpec& spec, std::uint64_t seed,
                       std::shared_ptr<PSimFrameObserver> observer)
    : m_spec(std::make_shared<const PSimCameraSpec>(spec))
    , m_link(std::make_shared<PSimCameraLink>())
    , m_model(makeModel(spec))
    , m_plugged(spec.plugged) {
    m_link->source = PSimImageSource::create(m_spec, seed);
    m_link->observer = std::move(observer);
    m_link->externalTrigger = m_spec->externalTrigger;
    m_link->thermal = std::make_shared<PSimThermal>(*m_spec);
}

ToupcamDeviceV2 PSimCamera::record() const {
    ToupcamDeviceV2 record{};
    fill(record.displayname, m_spec->displayName);
    fill(record.id, m_spec->id);
    record.model = m_model;
    return record;
}

bool PSimCamera::isPlugged() const {
    const std::lock_guard lock(m_mutex);
    return m_plugged;
}

std::shared_ptr<PSimSession> PSimCamera::session() const {
    const std::lock_guard lock(m_mutex);
    return m_session;
}

std::shared_ptr<PSimSession> PSimCamera::open() {
    const std::lock_guard lock(m_mutex);
    if (!m_plugged || (m_session && !m_session->isGone()))
        return nullptr;
    m_session = std::make_shared<PSimSession>(m_spec, m_link);
    return m_session;
}

void PSimCamera::closed(const std::shared_ptr<PSimSession>& session) {
    const std::lock_guard lock(m_mutex);
    if (m_session != session)
        return; // replugged and opened again before the old handle was closed
    m_link->thermal->drive({});
    m_lastCounts = m_session->stream().counts();
    m_session.reset();
}

bool PSimCamera::unplug(const std::function<void()>& afterwards) {
    std::shared_ptr<PSimSession> open;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_plugged)
            return false;
        m_plugged = false;
        m_link->thermal->drive({});
        open = m_session;
    }
    if (!open || !open->unplugged(afterwards))
        afterwards();
    return true;
}

bool PSimCamera::plug() {
    const std::lock_guard lock(m_mutex);
    return !std::exchange(m_plugged, true);
}

void PSimCamera::hold(bool held) {
    m_link->held = held;
    if (const std::shared_ptr<PSimSession> open = session())
        open->stream().settingsChanged();
}

bool PSimCamera::pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) {
    const std::shared_ptr<PSimSession> open = session();
    return open && open->stream().pushRaw(data, header, isSnapshot);
}

bool PSimCamera::fireEvent(unsigned code) {
    const std::shared_ptr<PSimSession> open = session();
    return open && open->stream().fireEvent(code);
}

bool PSimCamera::signal() {
    const std::shared_ptr<PSimSession> open = session();
    return open && open->stream().signal();
}

std::uint64_t PSimCamera::missedSignals() const {
    const std::shared_ptr<PSimSession> open = session();
    return open ? open->stream().missedSignals() : 0;
}

PSimFrameCounts PSimCamera::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_session ? m_session->stream().counts() : m_lastCounts;
}
