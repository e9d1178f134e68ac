// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QObject>

class QAction;
class QMainWindow;

/// Everything that can be done from the menus, the tool bar and the keyboard. The GUI thread.
class PViewActions : public QObject {
    Q_OBJECT

public:
    /// Makes the actions, which work in this window wherever the focus is.
    explicit PViewActions(QMainWindow* window);

    QAction* snapshot;
    QAction* savePicture;
    QAction* record;
    QAction* captureFiles;
    QAction* saveProfile;
    QAction* loadProfile;
    QAction* closeCamera;
    QAction* quit;
    QAction* live;
    QAction* region;
    QAction* wholeSensor;
    QAction* pixelSize;
    QAction* search;
    QAction* fit;
    QAction* actualSize;
    QAction* zoomIn;
    QAction* zoomOut;
    QAction* fullScreen;
    QAction* clipped;
    QAction* autoContrast;
    QAction* help;
    QAction* about;

    /// Enables an action; or disables it if there is a reason, which its tool tip then has too.
    static void setObstacle(QAction* action, const QString& reason);

    /// Those that need an open camera.
    QList<QAction*> ofCamera() const;
    /// All that have a shortcut.
    QList<QAction*> withShortcut() const;

private:
    QAction* add(const char* name, const QString& text, const QString& shortText,
                 const QKeySequence& key, const QString& explanation);
    QAction* addSwitch(const char* name, const QString& text, const QString& shortText,
                       const QKeySequence& key, const QString& explanation);

    void makeFileActions();
    void makeCameraActions();
    void makeViewActions();
    void makeHelpActions();
    void setIcons();

    QMainWindow* m_window;
};
