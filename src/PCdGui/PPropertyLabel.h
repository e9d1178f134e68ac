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

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    PPropertyEditor* m_editor;
};
