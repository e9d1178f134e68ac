// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PCameraListPanel.h>

#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString firstLine(const PCameraIdentity& camera) {
    return camera.serial.isEmpty() ? camera.model : camera.model + u" · "_qs + camera.serial;
}

} // namespace

PCameraListPanel::PCameraListPanel(QWidget* parent)
    : QWidget(parent)
    , m_list(new QListWidget) {
    m_list->setObjectName(u"cameras"_qs);
    m_list->setAlternatingRowColors(true);
    m_list->setSpacing(2);
    m_list->setToolTip(tr("Double-click a camera to open it."));
    connect(m_list, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        emit openRequested(item->data(Qt::UserRole).toString());
    });
    auto* const search = new QPushButton(tr("Search again"));
    connect(search, &QPushButton::clicked, this, &PCameraListPanel::searchRequested);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_list, 1);
    column->addWidget(search);
}

void PCameraListPanel::setEntries(const QList<Entry>& entries) {
    const QListWidgetItem* const current = m_list->currentItem();
    const QVariant chosen = current == nullptr ? QVariant() : current->data(Qt::UserRole);
    m_list->clear();
    for (const Entry& entry : entries) {
        QString details = entry.state;
        if (entry.camera.simulated)
            details = tr("Simulated camera") + u", "_qs + details;
        auto* const item = new QListWidgetItem(firstLine(entry.camera) + u'\n' + details, m_list);
        item->setData(Qt::UserRole, entry.camera.id);
        if (chosen == entry.camera.id)
            m_list->setCurrentItem(item); // which may be in another row now
    }
}

void PCameraListPanel::select(const QString& id) {
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->data(Qt::UserRole) == id)
            m_list->setCurrentRow(row);
    }
}

#include "moc_PCameraListPanel.cpp"
