// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

class PPropertyEditor;

/// The title beside an editor. It belongs to it like a part: a click touches the editor, the tool
/// tip and the menu are the editor's, and it is disabled with it. The GUI thread.
class PPropertyLabel : public QLabel {
    Q_OBJECT

public:
    /// The editor must live as long: both belong to one panel.
    PPropertyLabel(const QString& title, PPropertyEditor* editor);

    /// Shows another title.
    void setTitle(const QString& title);
    /// As high as its lines are at the width that it was given.
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
