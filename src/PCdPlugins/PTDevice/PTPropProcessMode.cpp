// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPropProcessMode.h>

#include <PCdPlugins/PTDevice/PTLog.h>

#include <initializer_list>

namespace {

struct Choice {
    const char* name; ///< untranslated
    QString title;    ///< translated
    int value;        ///< the SDK's code
};

/// The k-th item has the id whose last byte is k, so that the first one's id is the null id.
QUuid itemId(int position) {
    return QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(position));
}

PEnumeration toEnumeration(std::initializer_list<Choice> choices) {
    PEnumeration items;
    for (const Choice& choice : choices)
        items.addItem(itemId(int(items.items().size())), QString::fromUtf8(choice.name),
                      choice.title, QByteArray::number(choice.value, 10));
    return items;
}

PEnumeration switchItems() {
    return toEnumeration(
        {{"Disable", QObject::tr("Disable"), 0}, {"Enable", QObject::tr("Enable"), 1}});
}

PEnumeration binningItems() {
    // Sums are the bare factor; averages have 0x80 added.
    return toEnumeration({{"No binning", QObject::tr("No binning"), 1},
                          {"Add 2x2", QObject::tr("Add 2x2"), 2},
                          {"Add 3x3", QObject::tr("Add 3x3"), 3},
                          {"Add 4x4", QObject::tr("Add 4x4"), 4},
                          {"Average 2x2", QObject::tr("Average 2x2"), 0x82},
                          {"Average 3x3", QObject::tr("Average 3x3"), 0x83},
                          {"Average 4x4", QObject::tr("Average 4x4"), 0x84}});
}

PEnumeration rotationItems() {
    return toEnumeration({{"0", QObject::tr("0°"), 0},
                          {"90", QObject::tr("90°"), 90},
                          {"180", QObject::tr("180°"), 180},
                          {"270", QObject::tr("270°"), 270}});
}

int sdkValue(const PEnumerationItem& item) {
    return item.data.toInt(nullptr, 10);
}

/// The id of the first item with this value, else the null id, which is that of the first item.
QUuid findItemId(const PEnumeration& items, int value) {
    for (const PEnumerationItem& item : items.items()) {
        if (sdkValue(item) == value)
            return item.id;
    }
    return QUuid();
}

} // namespace

PTPropProcessMode::PTPropProcessMode(Toupcam_t* handle, const QByteArray& id, const QString& title,
                                     int option, const PEnumeration& items)
    : PDevicePropertyEnum(id, title, PCD::DevicePropertyType::Choice)
    , m_handle(handle)
    , m_items(items)
    , m_option(option) {
}

bool PTPropProcessMode::trySetValueToDevice(QUuid item) {
    const int value = sdkValue(convertToR(rangeInner()).getItem(item));
    Toupcam_put_Option(m_handle, unsigned(m_option), value);
    return true;
}

QUuid PTPropProcessMode::tryGetValueFromDevice() {
    int value = 0;
    Toupcam_get_Option(m_handle, unsigned(m_option), &value);
    return findItemId(m_items, value);
}

PTPropBackligtComp::PTPropBackligtComp(Toupcam_t* handle, const QByteArray& id,
                                       const QString& title, int option, const PEnumeration& items)
    : PDevicePropertyEnum(id, title, PCD::DevicePropertyType::Choice)
    , m_handle(handle)
    , m_items(items)
    , m_option(option) {
}

bool PTPropBackligtComp::trySetValueToDevice(QUuid item) {
    const int value = sdkValue(convertToR(rangeInner()).getItem(item));
    return checkError(Toupcam_put_HZ(m_handle, value));
}

QUuid PTPropBackligtComp::tryGetValueFromDevice() {
    int value = 0;
    Toupcam_get_HZ(m_handle, &value);
    return findItemId(m_items, value);
}

QList<PDeviceProperty*> createProcessModeProperties(PTDevice*, Toupcam_t* handle) {
    return {new PTPropProcessMode(handle, "colormatrix", QObject::tr("Color matrix"),
                                  TOUPCAM_OPTION_COLORMATIX, switchItems()),
            new PTPropProcessMode(handle, "wbgain", QObject::tr("WB Gain"), TOUPCAM_OPTION_WBGAIN,
                                  switchItems()),
            new PTPropProcessMode(handle, "binning", QObject::tr("Binning"), TOUPCAM_OPTION_BINNING,
                                  binningItems()),
            new PTPropProcessMode(handle, "rotate", QObject::tr("Rotate"), TOUPCAM_OPTION_ROTATE,
                                  rotationItems())};
}

#include "moc_PTPropProcessMode.cpp"
