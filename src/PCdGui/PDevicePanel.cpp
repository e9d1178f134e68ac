// SPDX-License-Identifier: MIT
#include <PCdGui/PDevicePanel.h>

#include <PCdGui/PPropertyGroupPanel.h>
#include <PCdGui/PSelectionFrame.h>
#include <PCdGui/PWheelGuard.h>
#include <PCdGui/editor/PDeviceWatch.h>
#include <PCdGui/text/PDeviceTexts.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

PDevicePanel::PDevicePanel(PDevice* device, QWidget* parent)
    : PColumnScroll(parent)
    , m_page(new QWidget)
    , m_column(new QVBoxLayout(m_page))
    , m_unusable(addNotice(tr("The device is not connected."))) {
    m_device = device;
    addGroups(device);
    m_nothing = addNotice(tr("No setting matches."));
    m_column->addStretch();
    alignTitles();
    new PWheelGuard(m_page);
    PSelectionFrame::addTo(*m_page);
    setWidget(m_page);
    const auto* const watch = new PDeviceWatch(device, this);
    m_unusable->setVisible(!watch->isUsable());
    connect(watch, &PDeviceWatch::usableChanged, m_unusable, &QWidget::setHidden);
}

PDevicePanel::~PDevicePanel() = default;

QLabel* PDevicePanel::addNotice(const QString& text) {
    auto* const notice = new QLabel(text, m_page);
    notice->setAlignment(Qt::AlignCenter);
    notice->hide();
    m_column->addWidget(notice);
    return notice;
}

void PDevicePanel::addGroups(PDevice* device) {
    QList<PDeviceProperty*> rest = device->supportProperties();
    for (const PDevicePropertyGroup* group : device->supportPropertyGroups()) {
        const QList<PDeviceProperty*> members = group->properties();
        addGroup(group->id(), group->title(), members);
        for (PDeviceProperty* member : members)
            rest.removeAll(member);
    }
    addGroup(QString(), tr("Other"), rest);
}

void PDevicePanel::addGroup(const QString& id, const QString& title,
                            const QList<PDeviceProperty*>& properties) {
    if (properties.isEmpty())
        return;
    m_groups.append(new PPropertyGroupPanel(title, properties, m_page));
    m_groupIds.append(id);
    m_column->addWidget(m_groups.last());
    connect(m_groups.last(), &PPropertyGroupPanel::refused, this, &PDevicePanel::refused);
}

void PDevicePanel::alignTitles() {
    int width = 0;
    for (const PPropertyGroupPanel* group : std::as_const(m_groups))
        width = std::max(width, group->titleWidth());
    for (PPropertyGroupPanel* group : std::as_const(m_groups))
        group->setTitleWidth(width);
}

void PDevicePanel::setFilter(const QString& text) {
    m_filter = text;
    bool any = false;
    for (PPropertyGroupPanel* group : std::as_const(m_groups)) {
        const bool shown = group->setFilter(text);
        group->setVisible(shown);
        any = any || shown;
    }
    m_nothing->setVisible(!any);
}

void PDevicePanel::setCondition(
    const QList<PRole>& roles,
    const std::function<bool(const PDeviceProperty& property, const QVariant& value)>& condition) {
    for (PPropertyGroupPanel* group : std::as_const(m_groups))
        group->setCondition(roles, condition);
}

void PDevicePanel::translate() {
    m_unusable->setText(tr("The device is not connected."));
    m_nothing->setText(tr("No setting matches."));
    if (m_device.isNull() || !m_device->isLinked() || m_device->isGone())
        return;
    const PDeviceTexts texts(*m_device);
    for (int index = 0; index < m_groups.size(); ++index) {
        const QString& id = m_groupIds[index];
        m_groups[index]->setTexts(id.isEmpty() ? tr("Other") : texts.ofGroup(id), texts);
    }
    alignTitles();
}

bool PDevicePanel::event(QEvent* event) {
    const bool known = PColumnScroll::event(event);
    // Last, because only now do the child panels have their new texts.
    if (event->type() == QEvent::LanguageChange) {
        translate();
        setFilter(m_filter);
    }
    return known;
}

#include "moc_PDevicePanel.cpp"
