// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/property/value/StreamedPair.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/typed/PDevicePropertyAction.h>

#include <PCore/PMinMaxRange.h>

/// A device with a property of every kind, listed in a different order than they must be sent in.
/// Its modes are 640x480 ("0") and 320x240 ("1"), and the range of its region follows the mode.
class ProfileDevice {
public:
    explicit ProfileDevice(const QByteArray& model = "Fake", const QByteArray& serial = "1")
        : device(model, serial) {
        roi->rangeInDevice = makeArea(640, 480);
        roi->setType(PCD::DevicePropertyType::ScanArea);
        contrast->rangeInDevice = makeRange(-100, 100);
        hue->rangeInDevice = makeRange(-180, 180);
        exposure->setType(PCD::DevicePropertyType::Custom);
        rotate->rangeInDevice = turns();
        rotate->setType(PCD::DevicePropertyType::Choice);
        negative->setType(PCD::DevicePropertyType::Switch);
        hidden->setSerializable(false);
        device.makeProperties = [this] { return all(); };
        QObject::connect(&device, &PDevice::modeChanged, [this](const PDeviceMode& mode) {
            sent.append(u"mode"_qs);
            roi->inDevice = QRect(0, 0, mode.width, mode.height);
            roi->rangeInDevice = makeArea(mode.width, mode.height);
        });
        device.supportProperties();
    }

    static QUuid turn(int number) { return QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(number)); }

    /// Gives everything that is saved another value, in mode "1".
    void changeAll() {
        device.setMode(device.modes.at(1));
        roi->inDevice = QRect(4, 8, 100, 200);
        contrast->inDevice = 12;
        hue->inDevice = -30;
        exposure->inDevice = QVariant::fromValue(StreamedPair{7, 70});
        rotate->inDevice = turn(1);
        negative->inDevice = true;
        sent.clear();
    }

    /// All values of the device that are saved, and the part of the composite that is not.
    QStringList state() const {
        const auto pair = exposure->inDevice.value<StreamedPair>();
        const QRect region = roi->inDevice.toRect();
        return {
            QString::fromLatin1(device.mode.id),
            u"roi %1,%2 %3x%4"_qs.arg(QString::number(region.x()), QString::number(region.y()),
                                      QString::number(region.width()),
                                      QString::number(region.height())),
            u"contrast %1"_qs.arg(contrast->inDevice.toInt()),
            u"hue %1"_qs.arg(hue->inDevice.toInt()),
            u"exposure %1 %2"_qs.arg(QString::number(pair.saved), QString::number(pair.leftOut)),
            u"rotate "_qs + rotate->inDevice.toUuid().toString(),
            u"negative %1"_qs.arg(negative->inDevice.toBool())};
    }

    /// A property that records in the device's list that it was set.
    class Noting : public FakeProperty {
    public:
        Noting(QStringList& list, const QByteArray& id, const QVariant& value)
            : FakeProperty(id, value)
            , m_list(list) {}
        bool trySetValue(QVariant value) override {
            m_list.append(QString::fromLatin1(id()));
            return FakeProperty::trySetValue(value);
        }

    private:
        QStringList& m_list;
    };

    class Action : public PDevicePropertyAction {
    public:
        explicit Action(QStringList& list)
            : PDevicePropertyAction("whiten", u"Whiten"_qs, PCD::DevicePropertyType::Action)
            , m_list(list) {}
        bool trySetValueToDevice() override {
            m_list.append(u"whiten"_qs);
            return true;
        }

    private:
        QStringList& m_list;
    };

    QStringList sent; ///< ids, and "mode", in the order they were sent

    FakeDevice device; // owns the properties
    Noting* roi = new Noting(sent, "roi", QRect(0, 0, 640, 480));
    Noting* contrast = new Noting(sent, "contrast", 0);
    Action* whiten = new Action(sent);
    Noting* exposure = new Noting(sent, "exposure", QVariant::fromValue(StreamedPair{1, 5}));
    Noting* hue = new Noting(sent, "hue", 0);
    Noting* rotate = new Noting(sent, "rotate", turn(0));
    Noting* negative = new Noting(sent, "negative", false);
    Noting* hidden = new Noting(sent, "hidden", 3);

private:
    static QVariant makeRange(int minimum, int maximum) {
        return QVariant::fromValue(PMinMaxRange<int>{minimum, maximum, 1});
    }
    static QVariant makeArea(int width, int height) {
        return QVariant::fromValue(PScanAreaRange{QRect(0, 0, width, height), 4, 4, 4, 4, 0});
    }
    static QVariant turns() {
        PEnumeration choices;
        choices.addItem(turn(0), u"0"_qs, u"0°"_qs, "0");
        choices.addItem(turn(1), u"90"_qs, u"90°"_qs, "90");
        return QVariant::fromValue(choices);
    }
    QList<PDeviceProperty*> all() const {
        return {roi, contrast, whiten, exposure, hue, rotate, negative, hidden};
    }
};

/// A profile of a device "Fake" with serial number "1" and these properties.
inline QByteArray profileText(const QByteArray& properties, const QByteArray& mode = {},
                              const QByteArray& model = "Fake") {
    return "{\n\"format\": \"camera profile\",\n\"version\": 1,\n\"camera\": {\n\"model\": \"" +
           model + "\",\n\"serial\": \"1\",\n" + mode + "\"properties\": {\n" + properties +
           "\n}\n}\n}\n";
}
