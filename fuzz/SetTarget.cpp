// SPDX-License-Identifier: MIT
// The words of `pcdctl set`, one a line, as they are read for a simulated camera.
#include <FuzzSupport.h>

#include <apps/pcdctl/camera/PCtlSettings.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <toupcam/sim/api/toupcamsim.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyText.h>

namespace {

/// Opened once: reading the words changes nothing.
PTDevice& openCamera() {
    static PTDevice* const camera = [] {
        ToupcamDeviceV2 records[TOUPCAM_MAX] = {};
        Fuzz::require(Toupcam_EnumV2(records) > 0, "there is a simulated camera");
        PTDevice* const opened = PTDevice::create(records[0]);
        Fuzz::require(opened != nullptr, "the camera opens");
        opened->supportProperties();
        return opened;
    }();
    return *camera;
}

unsigned callCount() {
    return ToupcamSim_journal(0, nullptr, 0);
}

/// A text that is read as a value, and written again, is read as the same value.
void requireKept(const PDeviceProperty& property, const QString& text) {
    const QVariant range = property.rangeInner();
    const QVariant value = PPropertyText::toValue(text, property.valueInner(), range);
    if (!value.isValid())
        return;
    const QString written = PPropertyText::ofValue(value, range);
    const QVariant again = PPropertyText::toValue(written, property.valueInner(), range);
    Fuzz::require(again == value, "a value's text is read as that value");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PTDevice& camera = openCamera();
    const unsigned callsBefore = callCount();
    const QStringList words = QString::fromUtf8(Fuzz::toBytes(data, size)).split(u'\n');
    PCtlSettings settings;
    const PCtlOutcome outcome = settings.read(words, camera);
    Fuzz::require(outcome.isDone() || !outcome.message.isEmpty(), "a failure has a reason");
    const QList<PDeviceProperty*>& all = camera.supportProperties();
    requireKept(*all.at(qsizetype(size) % all.size()), words.first());
    Fuzz::require(callCount() == callsBefore, "reading the words sends nothing to the camera");
    return 0;
}
