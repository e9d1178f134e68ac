// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyEnum.h>
#include <PCd/property/typed/PDevicePropertyInt.h>
#include <PCd/property/typed/PDevicePropertyMinMaxTQVariantBased.h>
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <QDoubleSpinBox>

#include <atomic>
#include <mutex>

/// A real number, with an editor of its own.
class LabNumber : public PDevicePropertyMinMaxTQVariantBased<double, double> {
public:
    LabNumber(const QByteArray& id, const QString& title, PMinMaxRange<double> range, double& value)
        : PDevicePropertyMinMaxTQVariantBased(id, title, PCD::DevicePropertyType::Custom)
        , m_range(range)
        , m_value(value) {}

    QWidget* createWidget() override {
        auto* const field = new QDoubleSpinBox;
        field->setObjectName(QString::fromLatin1(id()));
        field->setDecimals(4);
        field->setKeyboardTracking(false); // a number that is being typed is not final yet
        field->setRange(m_range.minimum, m_range.maximum);
        field->setValue(m_value);
        connect(field, &QDoubleSpinBox::valueChanged, this,
                [this](double value) { setValue(value); });
        connect(this, &PDeviceProperty::valueChanged, field, [field](const QVariant& value) {
            const QSignalBlocker quiet(field);
            field->setValue(value.toDouble());
        });
        return field;
    }
    bool trySetValueToDevice(double value) override {
        const bool isTaken = value >= m_range.minimum && value <= m_range.maximum;
        if (isTaken)
            m_value = value;
        return isTaken;
    }
    double tryGetValueFromDevice() override { return m_value; }
    PMinMaxRange<double> tryGetRangeFromDevice() override { return m_range; }

private:
    const PMinMaxRange<double> m_range;
    double& m_value; ///< the camera's
};

class LabSwitch : public PDevicePropertyBool {
public:
    LabSwitch(const QByteArray& id, const QString& title, bool& value)
        : PDevicePropertyBool(id, title, PCD::DevicePropertyType::Switch)
        , m_value(value) {}

    bool trySetValueToDevice(bool value) override {
        m_value = value;
        return true;
    }
    bool tryGetValueFromDevice() override { return m_value; }

private:
    bool& m_value;
};

class LabInteger : public PDevicePropertyInt {
public:
    LabInteger(const QByteArray& id, const QString& title, PMinMaxRange<int> range,
               std::atomic<int>& value)
        : PDevicePropertyInt(id, title, PCD::DevicePropertyType::Integer)
        , m_range(range)
        , m_value(value) {}

    bool trySetValueToDevice(int value) override {
        const bool isTaken = value >= m_range.minimum && value <= m_range.maximum;
        if (isTaken)
            m_value = value;
        return isTaken;
    }
    int tryGetValueFromDevice() override { return m_value; }
    PMinMaxRange<int> tryGetRangeFromDevice() override { return m_range; }

private:
    const PMinMaxRange<int> m_range;
    std::atomic<int>& m_value;
};

/// Quarter turns, by name.
class LabTurn : public PDevicePropertyEnum {
public:
    LabTurn(const QByteArray& id, const QString& title, std::atomic<int>& quarters)
        : PDevicePropertyEnum(id, title, PCD::DevicePropertyType::Choice)
        , m_quarters(quarters) {}

    bool trySetValueToDevice(QUuid item) override {
        const PEnumeration items = tryGetRangeFromDevice();
        m_quarters = items.getItem(item).name.toInt() / 90;
        return true;
    }
    QUuid tryGetValueFromDevice() override { return itemId(m_quarters); }
    PEnumeration tryGetRangeFromDevice() override {
        PEnumeration items;
        for (int i = 0; i < 4; ++i) {
            const QString name = QString::number(i * 90);
            items.addItem(itemId(i), name, name, {});
        }
        return items;
    }

private:
    static QUuid itemId(int quarters) {
        return QUuid(7, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(quarters));
    }

    std::atomic<int>& m_quarters;
};

class LabWindow : public PDevicePropertyScanArea {
public:
    /// The frames' thread reads the value under this lock.
    LabWindow(const QByteArray& id, const QString& title, QRect sensor, QRect& value,
              std::mutex& mutex)
        : PDevicePropertyScanArea(id, title, PCD::DevicePropertyType::ScanArea)
        , m_range{sensor, 16, 16, 2, 2, 2}
        , m_value(value)
        , m_mutex(mutex) {}

    bool trySetValueToDevice(QRect value) override {
        const bool isTaken = m_range.bounds.contains(value);
        const std::lock_guard lock(m_mutex);
        if (isTaken)
            m_value = value;
        return isTaken;
    }
    QRect tryGetValueFromDevice() override { return m_value; }
    PScanAreaRange tryGetRangeFromDevice() override { return m_range; }

private:
    const PScanAreaRange m_range;
    QRect& m_value;
    std::mutex& m_mutex;
};
