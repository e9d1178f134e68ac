// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PCdTypes.h>

#include <PCore/PExport.h>

#include <QByteArray>
#include <QObject>
#include <QVariant>

class PAbstractReader;
class PAbstractWriter;
class PDevice;
class QWidget;

/// One setting of a device: its id, title and kind, and its cached value and range. A plugin
/// derives from it (through the typed templates) and implements the try… functions. Everything runs
/// on the device's thread; other threads post calls.
class PCD_EXPORT PDeviceProperty : public QObject {
    Q_OBJECT

public:
    PDeviceProperty(QByteArray id, QString title, PCD::DevicePropertyType type);
    ~PDeviceProperty() override;

    // The order of the virtual functions is part of the binary interface: add at the end only.

    /// A new editor without a parent, owned by the caller: the host's generic editor where a
    /// program has installed one (PWidgetFactory), else a label with the title.
    virtual QWidget* createWidget();
    /// Restores the value from the reader's current object. False if it is missing or refused.
    virtual bool readStreamThis(PAbstractReader* reader);
    /// Writes an object of this name with the value; a property that is not serialisable writes
    /// nothing. False if the value cannot be written.
    virtual bool writeStreamThis(PAbstractWriter* writer, const QString& name);
    /// Sends a value to the device. False if it was not taken.
    virtual bool trySetValue(QVariant value) = 0;
    /// Reads the device's value, or its range (invalid if it has none).
    virtual QVariant tryGetValue() = 0;
    virtual QVariant tryGetRange() = 0;
    /// Writes and reads the bare value, in its PPropertyEncoding; reading sends it to the device.
    virtual bool writeValueToStream(PAbstractWriter* writer) const;
    virtual bool readValueFromStream(PAbstractReader* reader, const QString& name);

    const QByteArray& id() const { return m_id; }
    const QString& title() const { return m_title; }
    PCD::DevicePropertyType type() const { return m_type; }
    /// The device that owns the property; null until a device does.
    PDevice* device() const { return m_device; }

    /// The cached value and range. The value of an action is invalid, and so is one that is unread,
    /// unless it is composite: then it is what the plugin returned. So is a range that was
    /// never read.
    QVariant valueInner() const { return m_value; }
    QVariant rangeInner() const { return m_range; }
    /// True if the cached value is not the device's: it did not answer (PReadWatch) when the value
    /// was last read, be it at first, in an update, or back after it was set.
    bool isUnread() const { return m_isUnread; }
    /// The cached value, or, while that is unread, the last one known: invalid if there is none.
    QVariant reportedValue() const;

    /// A value and its range, as read from the device.
    struct Reading {
        QVariant value;
        QVariant range;
    };
    /// Reads range and value from the device without caching them or emitting signals. Fields of a
    /// composite value that the device does not hold come from the last known value. If the device
    /// does not answer (PReadWatch), the value is invalid, and the range is the cached one if
    /// known.
    Reading readFromDevice();
    /// Restores those fields of the cached composite value that the device does not hold from an
    /// earlier copy, and emits valueChanged() if one changes. Needed when all fields have been
    /// overwritten with values read from the device, as a plugin's panel does when it is created.
    void restoreHostFields(const QVariant& before);

    /// Sends a value to the device, reads the device's value whatever the result was, and always
    /// emits valueChanged() with it, so that an editor does not keep showing a refused value. Only
    /// a composite value that the device accepted is cached as given, since devices do not hold all
    /// of its fields. If the value cannot be read back, it is unread.
    void setValue(const QVariant& value);

    QVariant defaultValue() const { return m_default; }
    /// The value that a reset sends; kept as given, even outside the range, and never sent
    /// automatically.
    void setDefaultValue(const QVariant& value) { m_default = value; }
    const QString& description() const { return m_description; }
    void setDescription(QString description) { m_description = std::move(description); }
    bool isSerializable() const { return m_serializable; }
    void setSerializable(bool serializable) { m_serializable = serializable; }
    void setType(PCD::DevicePropertyType type) { m_type = type; }
    ValueUnits unit() const { return m_unit; }
    void setUnit(ValueUnits unit) { m_unit = unit; }
    ValueUnitType unitsType() const { return m_unitsType; }
    void setUnitsType(ValueUnitType type) { m_unitsType = type; }

public slots:
    /// Reads range and value from the device and emits the signals of those that changed, with
    /// `force` of both. If the device does not answer (PReadWatch), the range stays and the value
    /// becomes unread: invalid, or, if composite, what the plugin returned. May be invoked by name
    /// without the argument.
    void updateValueFromDevice(bool force = false);

signals:
    /// The cached value: after each setValue(), and after a reading that changed it or was forced.
    /// Not by a reading that leaves a composite value unread: panels write back what they show.
    void valueChanged(const QVariant& value);
    /// The cached range: after a reading that changed it or was forced.
    void rangeChanged(const QVariant& range);
    /// setValue() is about to send this value to the device.
    void valueAboutToBeSent(const QVariant& value);

protected:
    /// Updates the cached value only; nothing is sent or emitted.
    void setValueInner(const QVariant& value) {
        m_value = value;
        m_isUnread = false;
    }
    /// The same for a value that takes the place of one that the device did not report.
    void setUnreadValueInner(const QVariant& value);

private:
    /// The cached value with what belongs to it.
    struct Cached {
        QVariant value;
        QVariant reported;
        bool isUnread;
    };

    Cached cached() const { return {m_value, reportedValue(), m_isUnread}; }
    void restore(const Cached& cached);
    void cacheUnread(const QVariant& returned, const QVariant& reported);
    Reading readAsReturned();
    void readAtFirst();
    void readBack();
    bool update(bool force);

    friend class PDevice;        // takes ownership of the property
    friend class PPropertyCheck; // updates a value that it has set
    friend class PQuietReading;  // replaces the cached value temporarily

    QByteArray m_id;
    QString m_title;
    PCD::DevicePropertyType m_type;
    bool m_isUnread = false; // in a gap: at the end it would move members of derived classes
    PDevice* m_device = nullptr;
    QVariant m_value;
    QVariant m_range;
    QVariant m_default;
    QString m_description;
    ValueUnits m_unit = ValueUnits::None;
    ValueUnitType m_unitsType = ValueUnitType::None;
    bool m_serializable = true;
};
