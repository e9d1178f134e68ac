// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <QWidget>

class QLabel;
class QTreeWidget;

/// The ledger of a camera: every frame by its outcome. The GUI thread.
class PFramesPanel : public QWidget {
    Q_OBJECT

public:
    explicit PFramesPanel(QWidget* parent = nullptr);

    /// `pictures`: the number of pictures taken, see PLedgerText::rows().
    void setLedger(const PFrameLedger& ledger, quint64 pictures);

private:
    QLabel* m_summary; // children
    QTreeWidget* m_table;
};
