// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QLabel>

class PPropertyEditor;

/// The title beside an editor, which acts as a part of it: a click goes to the editor, tool tip and
/// menu are the editor's, and it is disabled with it. The GUI thread.
class PCD_TEST_EXPORT PPropertyLabel : public QLabel {
    Q_OBJECT

public:
    /// The editor must exist as long as this: both belong to one panel.
    PPropertyLabel(const QString& title, PPropertyEditor* editor);

    /// Shows another title.
    void setTitle(const QString& title);
    /// The height of its lines at its present width.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QSize inLines(QSize hint) const;

    PPropertyEditor* m_editor;
};
