// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <PCd/profile/PDeviceProfileReport.h>

#include <QList>
#include <QStringList>
#include <QVariant>

#include <chrono>
#include <optional>

class PCameraSession;
class PDevice;
class PDeviceProperty;

/// Settings of one camera as the user writes them: "ID=VALUE", "ID.FIELD=VALUE" for one field of a
/// composite value, or "ID" alone for an action. The main thread; the camera must outlive this.
class PCtlSettings {
public:
    /// Reads and checks all of them; nothing is sent. Wrong usage names the word and what was
    /// expected.
    PCtlOutcome read(const QStringList& words, PDevice& device);

    /// Sends them in the order given, runs the actions, and reads back what the camera has. Fails,
    /// naming each value that the camera did not take; the others are still sent.
    PCtlOutcome apply(PCameraSession& session, std::optional<std::chrono::milliseconds> timeout);

    /// The properties that were to be set; for an action, those that it sets.
    QList<PDeviceProperty*> properties() const;
    /// The failures of apply().
    const QList<PDeviceProfileReport::Item>& refused() const { return m_refused; }

private:
    struct Field {
        QString name;
        QString text;
    };
    struct Setting {
        PDeviceProperty* property;
        QList<Field> fields; ///< of a composite value; empty: the whole value
        QVariant value;      ///< neither this nor fields: run the action
    };

    PCtlOutcome readWord(const QString& word, PDevice& device);
    PCtlOutcome readField(PDeviceProperty& property, const Field& field);
    bool isGiven(const PDeviceProperty* property, const QString& field) const;
    void addField(PDeviceProperty& property, const Field& field);
    void send(const Setting& setting);
    void sendFields(const Setting& setting);
    void refuse(const QByteArray& name, const QString& requested, const QString& actual);

    QList<Setting> m_settings;
    QList<PDeviceProfileReport::Item> m_refused;
};
