// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class PCameraTabs;
class PViewActions;
class PViewCamera;
class QWidget;
struct PDeviceProfile;

/// Loads and saves the settings of the camera in front, through file dialogs, when the actions for
/// it are triggered. The GUI thread.
class PProfileController : public QObject {
    Q_OBJECT

public:
    /// Actions and tabs must outlive it; the window is the parent of it and of the dialogs.
    PProfileController(const PViewActions& actions, PCameraTabs& tabs, QWidget* window);

    /// Called before a camera gets the settings of a profile; if it returns false, it keeps its
    /// own.
    void setCondition(std::function<bool(const PViewCamera&, const PDeviceProfile&)> condition);

    /// Applies the profile in this file to the camera in front, which must be plugged in, and shows
    /// the report; a file that cannot be applied is reported in a message box instead.
    void apply(const QString& path);
    /// Asks the user whether to apply the profile in this file to the camera in front, as soon as
    /// one is plugged in; a file that is not a profile is reported in a message box instead.
    void offer(const QString& path);
    /// Saves the settings of the camera in front to this file, if it is plugged in.
    void saveTo(const QString& path);

signals:
    /// A message for the status bar: the result of saving, or what an offered profile waits for.
    void messageChanged(const QString& message);

private:
    static QString filter();
    QString folder() const;
    void load();
    void save();
    void askToApply();
    void applyIfPluggedIn(const QString& path);

    PCameraTabs& m_tabs;
    QWidget* m_window;
    std::function<bool(const PViewCamera&, const PDeviceProfile&)> m_condition;
    QString m_folder;  ///< of the last profile chosen in a dialog; empty: none yet
    QString m_offered; ///< the file; empty: none, or the user was asked
};
