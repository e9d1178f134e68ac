// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/PViewProgram.h>

#include <support/FolderTest.h>
#include <support/WaitUntil.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QWidget>

#include <memory>

class PCameraTabs;
class PCameraPage;
class PMainWindow;
class PViewCamera;

/// A test that operates the viewer's window on simulated cameras, with its own settings and capture
/// folder.
class ViewSession : public FolderTest {
protected:
    ViewSession();
    ~ViewSession() override;

    /// A small, fast camera of a scene. Keys that a test does not set have the values of the
    /// built-in scene.
    static QJsonObject camera(const QString& id = u"cam-1"_qs, const QString& serial = u"S0001"_qs);
    /// The faults of the scene that start() loads.
    QJsonArray faults;
    /// Starts the program on these cameras and shows its window.
    void start(const QJsonArray& cameras, const QStringList& words = {});
    /// Ends the program as closing the window does.
    void end();

    PMainWindow& window() { return m_program->window(); }
    PCameraTabs& cameraTabs();
    PCameraPage& page();
    PViewCamera& inFront();
    template <typename Widget>
    Widget& widget(const QString& name) {
        Widget* const found = widgets().findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return *found;
    }

    /// Labels and buttons of the window whose text still does not fit when the layout has settled.
    QStringList cutOff();
    /// Waits for frames of the camera in front that are newer than this call.
    bool waitForNewFrames();
    /// Drags the mouse over the view of the camera in front, with the left button pressed.
    void drag(QPoint from, QPoint to);
    /// Unplugs and plugs in a simulated camera.
    static bool unplug(const char* camera);
    static bool plug(const char* camera);
    /// From now on nothing of this camera arrives.
    static bool hold(const char* camera);
    /// The calls of the SDK so far that contain this text, oldest first, as the journal has them.
    static QStringList calls(const QString& text);
    /// Those calls that set something.
    static QStringList puts() { return calls(u"_put_"_qs); }
    /// Makes the next calls of a function of the SDK fail.
    static void fail(const char* function, unsigned calls);
    /// Delays every call of a function of the SDK by this time (0: not any more).
    static void delay(const char* function, unsigned ms);
    QString captureFolder() const { return path(u"captures"_qs); }

private:
    QWidget& widgets();
    QStringList cutOffNow();

    std::unique_ptr<PViewProgram> m_program;
};
