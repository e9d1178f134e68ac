// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>

#include <QWidget>

class QListWidget;

/// The cameras that are present, and those that are open but unplugged. The GUI thread.
class PCameraListPanel : public QWidget {
    Q_OBJECT

public:
    /// One line of the list.
    struct Entry {
        PCameraIdentity camera;
        QString state; ///< "open", "unplugged" …
    };

    explicit PCameraListPanel(QWidget* parent = nullptr);

    /// Replaces the list; the selected camera stays selected if it is still there.
    void setEntries(const QList<Entry>& entries);
    /// Selects the camera with this id; nothing changes if it is not in the list.
    void select(const QString& id);

signals:
    /// The user wants to open the camera with this id.
    void openRequested(const QString& id);
    /// The user wants to search for cameras again.
    void searchRequested();

private:
    QListWidget* m_list; // child
};
