// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <PCore/PStatus.h>

#include <QSize>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class PImageView;
class PViewCamera;
class PViewProgram;
class QAction;
class QWidget;

/// Runs the main thread's event loop, without a break, until the predicate holds. False if it does
/// not by the deadline. The GUI thread.
bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline);

/// The viewer with its window, on one simulated camera that hands out ready-made colour frames, 30
/// a second. The GUI thread.
class Viewer {
public:
    Viewer();
    /// Closes the window as the user does.
    ~Viewer();

    /// Shows the window, and waits until the start is complete. With an empty sensor there is no
    /// camera. The scene is left in the folder. Fails with the reason.
    PStatus start(const QString& folder, QSize sensor);

    /// Null without a camera.
    PViewCamera* camera() const;
    PImageView* view() const;
    /// An action, or a widget, by its object name.
    QAction* action(const QString& name) const;
    QWidget* widget(const QString& name) const;

    /// Stops the live picture and returns the ledger once no frame is waiting.
    PFrameLedger stopAndSettle();

private:
    QWidget& window() const;

    std::unique_ptr<PViewProgram> m_program;
};
