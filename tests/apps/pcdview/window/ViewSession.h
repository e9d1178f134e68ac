// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/PViewProgram.h>

#include <support/FolderTest.h>
#include <support/WaitUntil.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QWidget>

#include <memory>

class PCameraTabs;
class PCameraPage;
class PMainWindow;
class PViewCamera;

/// A test that drives the viewer's window on simulated cameras, with settings and a capture folder
/// of its own.
class ViewSession : public FolderTest {
protected:
    ViewSession();
    ~ViewSession() override;

    /// A small, quick camera of a scene; what a test does not set is as in the built-in scene.
    static QJsonObject camera(const QString& id = u"cam-1"_qs, const QString& serial = u"S0001"_qs);
    /// The faults of the scene that start() makes.
    QJsonArray faults;
    /// Starts the program on these cameras and shows its window.
    void start(const QJsonArray& cameras, const QStringList& words = {});
    /// Ends it as closing the window does.
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
    /// Waits for frames of the camera in front that were not there yet.
    bool waitForNewFrames();
    /// Pulls and plugs the cable of a simulated camera.
    static bool unplug(const char* camera);
    static bool plug(const char* camera);
    /// The calls of the SDK so far that contain this text, oldest first, as the journal has them.
    static QStringList calls(const QString& text);
    /// Those that set something.
    static QStringList puts() { return calls(u"_put_"_qs); }
    /// Has the next calls of a function of the SDK fail.
    static void fail(const char* function, unsigned calls);
    /// Delays every call of a function of the SDK by this time (0: not any more).
    static void delay(const char* function, unsigned ms);
    QString captureFolder() const { return path(u"captures"_qs); }

private:
    QWidget& widgets();
    QStringList cutOffNow();

    std::unique_ptr<PViewProgram> m_program;
};
