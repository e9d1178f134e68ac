// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PFramesPanel.h>

#include <apps/pcdview/window/panels/PLedgerText.h>

#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

PFramesPanel::PFramesPanel(QWidget* parent)
    : QWidget(parent)
    , m_summary(new QLabel)
    , m_table(new QTreeWidget) {
    m_summary->setWordWrap(true);
    m_table->setObjectName(u"frames"_qs);
    m_table->setColumnCount(2);
    m_table->setHeaderLabels({tr("Outcome"), tr("Frames")});
    m_table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_table->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_table->header()->setStretchLastSection(false);
    m_table->setRootIsDecorated(false);
    m_table->setSelectionMode(QAbstractItemView::NoSelection);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_summary);
    column->addWidget(m_table, 1);
}

void PFramesPanel::setLedger(const PFrameLedger& ledger, quint64 pictures) {
    m_summary->setText(PLedgerText::summary(ledger));
    const auto rows = PLedgerText::rows(ledger, pictures);
    while (m_table->topLevelItemCount() > rows.size())
        delete m_table->takeTopLevelItem(m_table->topLevelItemCount() - 1);
    while (m_table->topLevelItemCount() < rows.size())
        m_table->addTopLevelItem(new QTreeWidgetItem);
    for (int row = 0; row < rows.size(); ++row) {
        QTreeWidgetItem* const item = m_table->topLevelItem(row);
        item->setText(0, rows[row].first);
        item->setText(1, QLocale().toString(rows[row].second));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    }
}

#include "moc_PFramesPanel.cpp"
