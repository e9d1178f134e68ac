// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>
#include <PCd/property/value/PRole.h>

#include <QHash>
#include <QPointer>
#include <QWidget>

#include <functional>

class PDeviceProperty;
class QLabel;
class QLineEdit;

/// All settings of a camera, with a search box. A camera keeps its panel, hidden,
/// while another one is shown: a run that the panel has started continues. The GUI thread.
class PSettingsPanel : public QWidget {
    Q_OBJECT

public:
    explicit PSettingsPanel(QWidget* parent = nullptr);

    /// What is missing if there is no device.
    enum class Without { Selection, Connection, Opening };
    /// Shows the settings of this linked device; without one, says why there are none.
    void setDevice(PDevice* device, Without without = Without::Selection);
    /// Called before the user's choice of another value is sent for a property with one of these
    /// roles; if it returns false, the camera keeps its value. Not called for properties' own
    /// panels. To be set before the first device.
    void setCondition(
        const QList<PRole>& roles,
        std::function<bool(const PDeviceProperty& property, const QVariant& value)> condition);
    /// Whether a command that a panel of the device has started is running: one of its push buttons
    /// that choose nothing stays pressed.
    bool hasPressedButton() const;

signals:
    /// hasPressedButton() may have changed.
    void buttonToggled();
    /// The camera kept its value when the user chose another one; the message says so.
    void refused(const QString& message);

private:
    void putAway();
    QWidget* findOrMakePanel(PDevice* device);
    void forget(PDevice* device);
    void follow(QWidget* panel);
    static QString toText(Without without);
    static QString refusalText(const QString& title, const QString& kept);
    void applyFilter();

    QLineEdit* m_filter; // children
    QLabel* m_nothing;
    QPointer<QWidget> m_panel;
    QHash<PDevice*, QPointer<QWidget>> m_panels; ///< of the linked devices that were shown
    QPointer<PDevice> m_device;
    QList<PRole> m_conditioned; ///< the roles that m_condition is for
    std::function<bool(const PDeviceProperty&, const QVariant&)> m_condition;
};
