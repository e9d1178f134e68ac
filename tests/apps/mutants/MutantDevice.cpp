// SPDX-License-Identifier: MIT
#include <apps/mutants/MutantDevice.h>

#include <apps/mutants/Mutant.h>
#include <apps/mutants/MutantTrigger.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/frame/PCdDipUtils.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <PCore/PMinMaxRange.h>

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>

namespace {

using Kind = PCD::DevicePropertyType;
using IntRange = PMinMaxRange<int>;
using std::chrono::milliseconds;

constexpr milliseconds slowLink{3300};
constexpr milliseconds slowStart{2300};
constexpr milliseconds slowStop{2500};
constexpr milliseconds slowCall{1200};
constexpr int slowEvery = 10; // readings
constexpr std::size_t leakedBytes = 4 << 20;
constexpr int startsUntilStuck =
    11; // more than any rule makes in a mode, but for those on resources

/// A value that nothing can be done with.
struct Formless {
    int number = 0;
};

void sleepIf(bool condition, milliseconds time) {
    if (condition)
        std::this_thread::sleep_for(time);
}

PDeviceProperty* findProperty(const QList<PDeviceProperty*>& properties, const QByteArray& id) {
    return *std::find_if(properties.begin(), properties.end(),
                         [&](const PDeviceProperty* property) { return property->id() == id; });
}

/// Puts a property that can be changed in the place of another.
MutantProperty* replace(QList<PDeviceProperty*>& properties, const QByteArray& id) {
    PDeviceProperty* const inner = findProperty(properties, id);
    auto* const mutant = new MutantProperty(inner);
    properties.replace(properties.indexOf(inner), mutant);
    return mutant;
}

MutantProperty* makeReading(const QByteArray& id, const QVariant& value) {
    return new MutantProperty(id, u"Reading"_qs, Kind::Custom, value);
}

} // namespace
Q_DECLARE_METATYPE(Formless)

MutantDevice::MutantDevice(QObject* parent)
    : PatternDevice(parent)
    , m_region(QPoint(), PatternCamera::sizes[0])
    , m_startSize(PatternCamera::sizes[0]) {
    if (breaks("still.snapshot"))
        setDeviceOption(PCD::DeviceOption::AsynchronousStill, false);
}

QByteArray MutantDevice::getModel() const {
    return breaks("identity.model") ? QByteArray() : PatternDevice::getModel();
}

QByteArray MutantDevice::getSerial() const {
    if (breaks("identity.printable"))
        return "P1\a";
    if (breaks("identity.id") || (breaks("identity.same-in-modes") && m_resolution != 0))
        return "P2";
    if (breaks("threads.identity") && QThread::currentThread() != thread())
        return {};
    return PatternDevice::getSerial();
}

bool MutantDevice::tryLink() {
    ++m_links;
    fault("tryLink");
    sleepIf(breaks("timing.link") && m_links == 1, slowLink);
    if (breaks("hot-plug.opens-again") && m_isReplugged)
        return false;
    return !breaks("open.link") && !(breaks("open.again") && m_links == 2);
}

// ---- Modes

QList<PDeviceMode> MutantDevice::getSupportModes() {
    if (!m_isModeInside)
        m_areModesRead = true;
    QList<PDeviceMode> modes = PatternDevice::getSupportModes();
    if (breaks("modes.present"))
        return {};
    if (breaks("modes.described"))
        modes.last().name.clear();
    if (breaks("modes.distinct"))
        modes.last().id = modes.first().id;
    if (breaks("modes.same-list") && m_resolution != 0)
        modes.append({16, 16, u"16x16"_qs, "2", 24});
    return modes;
}

PDeviceMode MutantDevice::getCurrentMode() {
    sleepIf(breaks("timing.modes") && m_areModesRead, slowCall);
    m_areModesRead = false;
    m_isModeInside = true;
    PDeviceMode mode = PatternDevice::getCurrentMode();
    m_isModeInside = false;
    if (breaks("modes.current"))
        mode.name = u"current"_qs;
    return m_isModeLost ? PDeviceMode() : mode;
}

bool MutantDevice::trySetMode(const PDeviceMode& mode) {
    m_startsInMode = 0;
    if (breaks("modes.set"))
        return true;
    const bool isSet = PatternDevice::trySetMode(mode);
    m_isModeLost = !isSet && breaks("modes.unknown");
    if (isSet) {
        m_resolution = mode.id.toInt();
        m_region = QRect(QPoint(), PatternCamera::sizes[m_resolution]);
    }
    return isSet;
}

// ---- Frames

bool MutantDevice::tryStartStream() {
    ++m_starts;
    m_isStuck = m_isStuck || ++m_startsInMode >= startsUntilStuck;
    sleepIf(breaks("timing.start") && m_starts == 1, slowStart);
    if (breaks("stream.starts") || (breaks("hot-plug.streams-again") && m_isReplugged))
        return false;
    leak();
    m_wasTriggered = m_wasTriggered || m_isTriggered;
    m_isPaused = breaks("stream.delivers") || (breaks("stream.restarts") && m_stoppedEarly) ||
                 (breaks("trigger.video-again") && m_wasTriggered && !m_isTriggered);
    m_stoppedEarly = false;
    m_startSize = PatternCamera::sizes[m_resolution];
    m_frames = 0;
    m_shots = 0;
    m_stream.start([this] { sendFrame(); });
    return true;
}

bool MutantDevice::tryStopStream() {
    ++m_stops;
    m_stream.stop();
    fault("tryStopStream");
    m_stoppedEarly = m_frames == 0 && !m_isPaused && !m_isTriggered;
    m_keptPixels = nullptr;
    sleepIf(breaks("timing.stop") && m_stops == 2, slowStop);
    if (breaks("stream.silent-after-stop"))
        QTimer::singleShot(50, this, [this] { sendFrame(); });
    // On this thread, but after the device has left the list.
    if (breaks("hot-plug.stream-ends") && m_isUnplugged)
        QMetaObject::invokeMethod(this, &MutantDevice::sendFrame, Qt::QueuedConnection);
    return !breaks("stream.stops");
}

void MutantDevice::leak() {
    if (breaks("resources.threads"))
        std::thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }).detach();
    if (breaks("resources.files"))
        leakFile();
    static std::vector<std::vector<char>> leaked;
    if (breaks("resources.memory"))
        leaked.emplace_back(leakedBytes);
}

void MutantDevice::leakFile() {
    ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

/// True if no frame is due.
bool MutantDevice::isSilent() {
    if (m_isPaused || (m_isLongest && breaks("stream.longest-exposure")))
        return true;
    if (!m_isTriggered || breaks("trigger.quiet"))
        return false;
    if (m_shots <= 0)
        return true;
    --m_shots;
    return false;
}

void MutantDevice::sendFrame() {
    if (isSilent() || (breaks("threads.frames-do-not-wait") && !waitForHost()))
        return;
    const int number = ++m_frames;
    if (breaks("stream.no-broken-frames") && number % 2 == 0) {
        reportDroppedFrames(PFrameOutcome::BadSize);
        return;
    }
    PDeviceProperty* const gain = breaks("threads.signals") ? getProperty("gain") : nullptr;
    if (gain != nullptr)
        emit gain->valueChanged(100);
    QSize size = breaks("modes.while-streaming") ? m_startSize : PatternCamera::sizes[m_resolution];
    if (breaks("stream.frame-size"))
        size.rwidth() += 4;
    PImage image = makeImage(size, number);
    if (breaks("stream.intact-frames"))
        keepAndSpoil(image);
    processFrameImage(image);
}

/// Changes the pixels of the frame before this one.
void MutantDevice::keepAndSpoil(PImage& image) {
    if (m_keptPixels != nullptr)
        m_keptPixels[0] ^= 0xff;
    m_keptPixels = image.rawData(PDIP::AccessMode::Write).data();
    m_kept = image;
}

/// False if the stream ends before the device's thread has answered.
bool MutantDevice::waitForHost() {
    const int question = m_frames + 1;
    // To the device's thread: the very thing that a driver must not wait for.
    QMetaObject::invokeMethod(
        this, [this, question] { m_answered = question; }, Qt::QueuedConnection);
    while (m_answered != question && m_stream.isRunning())
        std::this_thread::sleep_for(milliseconds(1));
    return m_stream.isRunning();
}

PImage MutantDevice::makeImage(const QSize& size, int number) const {
    const bool isGrey = breaks("stream.frame-format") && number % 2 == 0;
    PImage image;
    image.create(size.width(), size.height(),
                 isGrey ? PDIP::ColorFormat::Gray : PDIP::ColorFormat::Bgr);
    const PDIP::ImageRawData pixels = image.rawData(PDIP::AccessMode::Write);
    std::memset(pixels.data(), number, pixels.size());
    return image;
}

bool MutantDevice::triggerStillCapture() {
    if (breaks("still.arrives"))
        return true;
    const QSize size = PatternCamera::sizes[m_resolution] / (breaks("still.size") ? 2 : 1);
    for (int i = 0; i < (breaks("still.single") ? 2 : 1); ++i)
        processSnapshot(PCdDipUtils::imageAsDeviceFrame(makeImage(size, 1)));
    if (breaks("still.stream-goes-on"))
        pause();
    return true;
}

// ---- Properties

QList<PDeviceProperty*> MutantDevice::getSupportProperties() {
    if (breaks("properties.new-objects") && !m_made.isEmpty())
        return m_made;
    QList<PDeviceProperty*> properties = PatternDevice::getSupportProperties();
    breakSwitch(properties);
    breakNumber(properties);
    breakChoice(properties);
    addExtras(properties);
    m_made = properties;
    return properties;
}

void MutantDevice::breakNumber(QList<PDeviceProperty*>& properties) {
    PDeviceProperty* const negative = findProperty(properties, "negative");
    MutantProperty* const exposure = replace(properties, "exposure");
    exposure->set = [this, set = exposure->set](const QVariant& value) {
        m_isLongest = value.toInt() == PatternCamera::maxima[PatternCamera::Exposure];
        return set(value);
    };
    if (breaks("properties.roles"))
        PPropertyRoles::declare(*exposure, {{PRole::ExposureTime, PRoleUnit::Own, "time"}});
    MutantProperty* const gain = replace(properties, "gain");
    const auto count = std::make_shared<int>(0);
    const int most = PatternCamera::maxima[PatternCamera::Gain];
    if (breaks("properties.default-type"))
        gain->setDefaultValue(u"100"_qs);
    if (breaks("properties.steady"))
        gain->get = [count] { return 100 + ++*count % 2; };
    if (breaks("properties.untouched-by-reading"))
        gain->get = [negative, get = gain->get] {
            negative->trySetValue(false);
            return get();
        };
    if (breaks("hot-plug.calls-return"))
        gain->get = [this, get = gain->get]() -> QVariant {
            if (m_isUnplugged)
                throw std::runtime_error("no such camera");
            return get();
        };
    if (breaks("ranges.ordered"))
        gain->range = [] { return QVariant::fromValue(IntRange{400, 100, 1}); };
    if (breaks("ranges.steady"))
        gain->range = [count] { return QVariant::fromValue(IntRange{100, 400 + ++*count % 2, 1}); };
    if (breaks("ranges.ends"))
        gain->set = [set = gain->set](const QVariant& value) {
            return value.toInt() != most && set(value);
        };
    if (breaks("ranges.outside"))
        gain->set = [count, set = gain->set](const QVariant& value) {
            // The value after one that is too large is lost.
            const bool isLost = std::exchange(*count, value.toInt() > most ? 1 : 0) == 1;
            return !isLost && set(value.toInt() > most ? QVariant(most) : value);
        };
    if (breaks("serialisation.property"))
        gain->written = most;
}

void MutantDevice::breakSwitch(QList<PDeviceProperty*>& properties) {
    MutantProperty* const negative = replace(properties, "negative");
    if (breaks("properties.set-read-back"))
        negative->set = [set = negative->set](const QVariant& value) {
            return !value.toBool() || set(true); // once on, it stays on, and says nothing of it
        };
    if (!breaks("settings.put-back"))
        return;
    // Once it was started often, it is on and stays so.
    negative->get = [this, get = negative->get] { return m_isStuck ? QVariant(true) : get(); };
}

void MutantDevice::breakChoice(QList<PDeviceProperty*>& properties) {
    MutantProperty* const pattern = replace(properties, "pattern");
    const auto items = pattern->range().value<PEnumeration>().items();
    PEnumeration choices;
    if (breaks("ranges.choice-names")) {
        for (const PEnumerationItem& item : items)
            choices.addItem(item.id, u"bars"_qs, item.title, item.data);
    } else if (breaks("ranges.choice-ids")) {
        for (const PEnumerationItem& item : items)
            choices.addItem(items.first().id, item.name, item.title, item.data);
    } else if (!breaks("ranges.choices")) {
        return;
    }
    pattern->range = [choices] { return QVariant::fromValue(choices); };
}

void MutantDevice::addExtras(QList<PDeviceProperty*>& properties) {
    properties << new MutantTrigger(m_isTriggered, m_shots) << makeRegion() << makeCooler();
    if (breaks("properties.id-form"))
        properties << makeReading("no word", 1);
    if (breaks("properties.id-unique"))
        properties << makeReading("gain", 1);
    if (breaks("properties.title"))
        properties << new MutantProperty("untitled", {}, Kind::Switch, true);
    if (breaks("properties.kind"))
        properties << new MutantProperty("text", u"Text"_qs, Kind::Integer, u"1"_qs);
    if (breaks("properties.in-range")) {
        auto* const reading = new MutantProperty("heat", u"Heat"_qs, Kind::Integer, 11);
        reading->range = [] { return QVariant::fromValue(IntRange{0, 10, 1}); };
        properties << reading;
    }
    if (breaks("timing.property")) {
        MutantProperty* const reading = makeReading("slow", 1);
        reading->get = [this] {
            sleepIf(++m_slowReadings % slowEvery == 0, slowCall);
            return 1;
        };
        properties << reading;
    }
    if (breaks("serialisation.form")) {
        MutantProperty* const odd = makeReading("odd", QVariant::fromValue(Formless()));
        odd->setSerializable(true);
        properties << odd;
    }
}

PDeviceProperty* MutantDevice::makeRegion() {
    auto* const region = new MutantProperty("region", u"Region"_qs, Kind::ScanArea, {});
    region->setSerializable(true);
    PPropertyRoles::declare(*region, {{PRole::Region}});
    region->range = [this] {
        const QSize size = PatternCamera::sizes[m_resolution];
        const int factor = breaks("ranges.region-in-mode") ? 2 : 1;
        const int least = breaks("ranges.region") ? 2 * size.width() : 16;
        return QVariant::fromValue(
            PScanAreaRange{QRect(QPoint(), size * factor), least, 16, 4, 4, 0});
    };
    region->get = [this] { return m_region; };
    region->set = [this, region](const QVariant& value) {
        const QRect rect = value.toRect();
        if (!rect.isEmpty() && region->range().value<PScanAreaRange>().bounds.contains(rect))
            m_region = rect;
        return true;
    };
    connect(this, &PDevice::modeChanged, region, [region] { region->updateValueFromDevice(); });
    return region;
}

PDeviceProperty* MutantDevice::makeCooler() {
    auto* const cooler = new MutantProperty("cooler", u"Cooler"_qs, Kind::Switch, false);
    cooler->setSerializable(true);
    PPropertyRoles::declare(*cooler, {{PRole::CoolerOn}});
    cooler->get = [this] { return m_isCooled; };
    cooler->set = [this](const QVariant& value) {
        m_isCooled = value.toBool() && !breaks("properties.thermal");
        return true;
    };
    return cooler;
}

QList<PDevicePropertyGroup*> MutantDevice::getSupportPropertyGroups() {
    if (breaks("groups.new-objects") && !m_madeGroups.isEmpty())
        return m_madeGroups;
    QList<PDevicePropertyGroup*> groups = PatternDevice::getSupportPropertyGroups();
    if (breaks("groups.members")) {
        PDeviceProperty* const stranger = makeReading("stranger", 1);
        stranger->setParent(groups.first());
        groups.first()->addProperty(stranger);
    }
    if (breaks("groups.ids"))
        groups << new PDevicePropertyGroup(groups.first()->id(), u"Again"_qs);
    if (breaks("groups.titles"))
        groups << new PDevicePropertyGroup(u"untitled"_qs, {});
    if (breaks("groups.repeats"))
        groups.first()->addProperty(getProperty("gain"));
    m_madeGroups = groups;
    return groups;
}

bool MutantDevice::readStreamThis(PAbstractReader* reader) {
    return breaks("serialisation.device") || PatternDevice::readStreamThis(reader);
}

#include "moc_MutantDevice.cpp"
#include "moc_MutantRegister.cpp"
#include "moc_MutantTrigger.cpp"
