// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTDevice.h>

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>
#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/PTLiveDevices.h>
#include <PCdPlugins/PTDevice/PTLog.h>
#include <PCdPlugins/PTDevice/PTStreamThread.h>
#include <PCdPlugins/PTDevice/TECDATA.h>

#include <QMutexLocker>
#include <QScopeGuard>

#include <cstring>
#include <stdexcept>

namespace {

constexpr int serialLength = 10;
constexpr auto constructorText = "PTDevice::PTDevice(ToupcamDeviceV2)";

/// The model name, which the SDK must provide.
const char* modelName(const ToupcamDeviceV2& record) {
    if (record.model == nullptr || record.model->name == nullptr)
        throw std::invalid_argument("the camera's record has no model name");
    return record.model->name;
}

HToupCam openCamera(const ToupcamDeviceV2& record) {
    // An id may fill its field without a NUL; the SDK must not read beyond it.
    char id[sizeof record.id + 1] = {};
    std::memcpy(id, record.id, sizeof record.id);
    return Toupcam_Open(id);
}

PDeviceMode readMode(HToupCam handle, unsigned index) {
    PDeviceMode mode;
    Toupcam_get_Resolution(handle, index, &mode.width, &mode.height);
    mode.name = u"%1x%2"_qs.arg(QString::number(mode.width), QString::number(mode.height));
    mode.id = QByteArray::number(index);
    mode.bitDepth = 24;
    return mode;
}

bool hasFlag(quint64 flags, quint64 flag) {
    return (flags & flag) != 0;
}

/// The state of a camera's stream; fields that cannot be read keep these values.
struct StreamState {
    unsigned exposureTime = 0; // microseconds
    int autoExposure = -1;
    unsigned short speed = 0;
    int trigger = -1;
    int raw = -1;
};

StreamState readStreamState(HToupCam handle) {
    StreamState state;
    Toupcam_get_ExpoTime(handle, &state.exposureTime);
    Toupcam_get_AutoExpoEnable(handle, &state.autoExposure);
    Toupcam_get_Speed(handle, &state.speed);
    Toupcam_get_Option(handle, TOUPCAM_OPTION_TRIGGER, &state.trigger);
    Toupcam_get_Option(handle, TOUPCAM_OPTION_RAW, &state.raw);
    return state;
}

} // namespace

PTDevice* PTDevice::create(ToupcamDeviceV2 record) {
    std::unique_ptr<PTDevice> device(new PTDevice(record));
    if (device->m_handle == nullptr) {
        PT_LOG_AT(85) << "PTDevice::create — Toupcam_Open returned null handle, device discarded";
        return nullptr;
    }
    return device.release();
}

PTDevice::PTDevice(ToupcamDeviceV2 record)
    : PDevice(nullptr)
    , modelFlags(record.model != nullptr ? record.model->flag : 0) {
    std::memcpy(cameraId, record.id, sizeof cameraId - 1);
    m_handle = openCamera(record);
    // If the constructor throws, the destructor does not run.
    auto closeAgain = qScopeGuard([this] { Toupcam_Close(m_handle); });
    readSerial();
    data.model = QString::fromUtf8(modelName(record)).toLatin1();
    streamThread = std::make_unique<PTStreamThread>(this, m_handle);
    setProcessImage(true);
    setDeviceOption(PCD::DeviceOption::HotPluggable, true);
    setDeviceOption(PCD::DeviceOption::AsynchronousStill, true);
    qRegisterMetaType<TECDATA>("TECDATA");
    qRegisterMetaType<FANDATA>("FANDATA");
    qRegisterMetaType<ExtendedExposureData>("ExtendedExposureData");
    applyFixedSettings();
    PTLiveDevices::add(this);
    closeAgain.dismiss();
}

PTDevice::~PTDevice() {
    PTLiveDevices::remove(this);
    // A running pull-mode worker would pull through a closed handle.
    streamThread->stopThread();
    // Returns when no callback is in progress.
    Toupcam_Close(m_handle);
    // A thread that still holds the mutex finishes first.
    const QMutexLocker lastHolder(&mutex);
}

void PTDevice::readSerial() {
    char serial[32] = {};
    if (!checkError(Toupcam_get_SerialNumber(m_handle, serial)))
        return;
    data.serial = QByteArray(serial, int(qstrnlen(serial, sizeof serial)));
    data.serial.resize(serialLength, '\0');
}

void PTDevice::applyFixedSettings() {
    // Each is tried once; a camera that refuses one still works.
    PT_OP_IN(constructorText, 141, Toupcam_put_Option(m_handle, TOUPCAM_OPTION_FRAMERATE, 0));
    PT_OP_IN(constructorText, 142, Toupcam_put_Option(m_handle, TOUPCAM_OPTION_MULTITHREAD, 1));
    if (modelFlags & TOUPCAM_FLAG_BANDWIDTH) {
        PT_OP_IN(constructorText, 148, Toupcam_put_Option(m_handle, TOUPCAM_OPTION_BANDWIDTH, 95));
    }
    PT_OP_IN(constructorText, 157, Toupcam_put_RealTime(m_handle, 1));
    PT_OP_IN(constructorText, 163, Toupcam_put_Option(m_handle, TOUPCAM_OPTION_PROCESSMODE, 0));
    // Blue first, for 24-bit frames and 32-bit pulls alike.
    PT_OP_IN(constructorText, 164, Toupcam_put_Option(m_handle, TOUPCAM_OPTION_BYTEORDER, 1));
    applyHighestSpeed();
}

void PTDevice::applyHighestSpeed() {
    const int maxSpeed = Toupcam_get_MaxSpeed(m_handle);
    if (maxSpeed > 0)
        PT_OP_IN(constructorText, 177,
                 Toupcam_put_Speed(m_handle, static_cast<unsigned short>(maxSpeed)));
}

bool PTDevice::isSupportStillCapture() const {
    return true;
}

PImage PTDevice::getSnapshot() {
    triggerStillCapture();
    return PImage();
}

bool PTDevice::triggerStillCapture() {
    unsigned index = unsigned(-1);
    if (!checkError(Toupcam_get_eSize(m_handle, &index)))
        return false;
    return checkError(Toupcam_Snap(m_handle, index));
}

QByteArray PTDevice::getModel() const {
    return data.model;
}

QByteArray PTDevice::getSerial() const {
    return data.serial;
}

bool PTDevice::tryLink() {
    return true;
}

bool PTDevice::tryUnlink() {
    return true;
}

bool PTDevice::tryStartStream() {
    const bool started = checkError(Toupcam_StartPushMode(m_handle, cbData, this));
    PT_LOG() << "Toupcam_StartPushMode started:" << started;
    // The camera's state, for the log. A refused start is reported only by the line above.
    const StreamState state = readStreamState(m_handle);
    PT_LOG() << "Stream state: expoTime(us)=" << state.exposureTime
             << "autoExpo=" << state.autoExposure << "speed=" << int(state.speed) << "/"
             << int(Toupcam_get_MaxSpeed(m_handle)) << "trigger=" << state.trigger
             << "raw=" << state.raw;
    PT_LOG() << "USB flags: usb30=" << hasFlag(modelFlags, TOUPCAM_FLAG_USB30)
             << "over_usb20=" << hasFlag(modelFlags, TOUPCAM_FLAG_USB30_OVER_USB20)
             << "usb32_over_usb30=" << hasFlag(modelFlags, TOUPCAM_FLAG_USB32_OVER_USB30);
    return started;
}

bool PTDevice::tryStopStream() {
    return checkError(Toupcam_Stop(m_handle));
}

QList<PDeviceMode> PTDevice::getSupportModes() {
    const int count = Toupcam_get_ResolutionNumber(m_handle);
    QList<PDeviceMode> modes;
    // A camera that has just been unplugged returns an error code, which as an unsigned count would
    // be two billion modes. Any other count is used as it is.
    for (int index = 0; index < count; ++index)
        modes.append(readMode(m_handle, unsigned(index)));
    return modes;
}

PDeviceMode PTDevice::getCurrentMode() {
    const QList<PDeviceMode> modes = getSupportModes();
    unsigned index = 0;
    Toupcam_get_eSize(m_handle, &index);
    for (const PDeviceMode& mode : modes) {
        if (mode.id.toInt() == int(index))
            return mode;
    }
    return PDeviceMode();
}

bool PTDevice::trySetMode(const PDeviceMode& mode) {
    PT_LOG_AT(323) << "Try set mode:" << mode.width << mode.height;
    // The id alone decides; sizes and names are for the user.
    const unsigned index = mode.id.toUInt();
    if (!checkError(Toupcam_put_eSize(m_handle, index))) {
        PT_LOG_AT(331) << "Failed TOUPCAM_OP: Toupcam_put_eSize index" << index << "for"
                       << mode.width << "x" << mode.height;
        return false;
    }
    unsigned applied = 0;
    int finalWidth = 0;
    int finalHeight = 0;
    Toupcam_get_eSize(m_handle, &applied);
    Toupcam_get_FinalSize(m_handle, &finalWidth, &finalHeight);
    PT_LOG_AT(342) << "Mode applied: eSize index" << applied << "final size" << finalWidth << "x"
                   << finalHeight;
    return true;
}

void PTDevice::handleSdkDisconnect() {
    // Several callbacks may detect this at the same time; only the first one reports it.
    if (disconnectReported.exchange(true))
        return;
    PT_LOG_AT(207) << "PTDevice: SDK reported disconnect for" << deviceId(false);
    // From the SDK's thread to the device's: the register removes the device in this signal.
    QMetaObject::invokeMethod(
        this, [this] { emit disconnected(deviceId(false)); }, Qt::QueuedConnection);
}

void PTDevice::postprocImage(const PImage& image) {
    streamThread->pushData(image);
}

void PTDevice::postprocEvt(unsigned int code) {
    streamThread->pushEvent(code);
}

#include "moc_PTDevice.cpp"
