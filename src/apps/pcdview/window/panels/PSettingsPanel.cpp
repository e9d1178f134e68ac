// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PSettingsPanel.h>

#include <PCdGui/PDevicePanel.h>

#include <PCd/device/PDevice.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int leastWidthWithoutCamera =
    300; // a panel that comes with a camera should not push the picture

} // namespace

PSettingsPanel::PSettingsPanel(QWidget* parent)
    : QWidget(parent)
    , m_filter(new QLineEdit)
    , m_nothing(new QLabel) {
    m_nothing->setObjectName(u"noSettings"_qs);
    m_filter->setObjectName(u"settingsFilter"_qs);
    m_filter->setPlaceholderText(tr("Find a setting"));
    m_filter->setClearButtonEnabled(true);
    connect(m_filter, &QLineEdit::textChanged, this, &PSettingsPanel::applyFilter);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_filter);
    column->addWidget(m_nothing, 1, Qt::AlignCenter);
    setDevice(nullptr);
}

void PSettingsPanel::setDevice(PDevice* device, Without without) {
    m_nothing->setText(toText(without));
    if (m_panel != nullptr && device == m_device)
        return;
    putAway();
    m_device = device;
    m_panel = device == nullptr ? nullptr : findOrMakePanel(device);
    m_filter->setEnabled(m_panel != nullptr);
    m_nothing->setVisible(m_panel == nullptr);
    // A panel has its own minimum.
    setMinimumWidth(m_panel == nullptr ? leastWidthWithoutCamera : 0);
    if (m_panel == nullptr)
        return;
    m_panel->show();
    applyFilter();
}

QString PSettingsPanel::toText(Without without) {
    switch (without) {
    case Without::Selection:
        return tr("No camera selected.");
    case Without::Connection:
        return tr("The camera is unplugged.");
    case Without::Opening:
        return tr("The camera is not open.");
    }
    return {};
}

void PSettingsPanel::putAway() {
    if (m_panel == nullptr)
        return;
    if (std::find(m_panels.cbegin(), m_panels.cend(), m_panel) != m_panels.cend())
        m_panel->hide();
    else
        delete m_panel;
}

QWidget* PSettingsPanel::findOrMakePanel(PDevice* device) {
    if (QWidget* const kept = m_panels.value(device))
        return kept;
    QWidget* const panel = device->createPropertiesWidget(this);
    if (panel == nullptr)
        return nullptr;
    static_cast<QVBoxLayout*>(layout())->addWidget(panel, 1);
    m_panels.insert(device, panel);
    follow(panel);
    connect(device, &PDevice::unlinked, panel, [this, device] { forget(device); });
    connect(device, &QObject::destroyed, panel, [this, device] { forget(device); });
    return panel;
}

void PSettingsPanel::follow(QWidget* panel) {
    for (const QPushButton* button : panel->findChildren<QPushButton*>())
        connect(button, &QPushButton::toggled, this, &PSettingsPanel::buttonToggled);
    auto* const settings = qobject_cast<PDevicePanel*>(panel);
    if (settings == nullptr)
        return;
    settings->setCondition(m_conditioned,
                           [this](const PDeviceProperty& property, const QVariant& value) {
                               return !m_condition || m_condition(property, value);
                           });
    connect(settings, &PDevicePanel::refused, this,
            [this](const QString& title, const QString& kept) {
                emit refused(refusalText(title, kept));
            });
}

void PSettingsPanel::setCondition(
    const QList<PRole>& roles,
    std::function<bool(const PDeviceProperty& property, const QVariant& value)> condition) {
    m_conditioned = roles;
    m_condition = std::move(condition);
}

QString PSettingsPanel::refusalText(const QString& title, const QString& kept) {
    return kept.isEmpty() ? tr("%1: the camera refused the value").arg(title)
                          : tr("%1: the camera kept “%2”").arg(title, kept);
}

/// The displayed panel stays until another one is shown: it reports that its device is gone.
void PSettingsPanel::forget(PDevice* device) {
    const QPointer<QWidget> panel = m_panels.take(device);
    if (panel != nullptr && panel != m_panel)
        panel->deleteLater();
}

bool PSettingsPanel::hasPressedButton() const {
    const auto buttons =
        m_panel == nullptr ? QList<QPushButton*>() : m_panel->findChildren<QPushButton*>();
    return std::any_of(buttons.begin(), buttons.end(), [](const QPushButton* button) {
        return button->isChecked() && !button->autoExclusive();
    });
}

void PSettingsPanel::applyFilter() {
    if (auto* const panel = qobject_cast<PDevicePanel*>(m_panel.data()))
        panel->setFilter(m_filter->text());
}

#include "moc_PSettingsPanel.cpp"
