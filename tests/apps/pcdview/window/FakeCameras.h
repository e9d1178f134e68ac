// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PRecordings.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/panels/PDockPanels.h>

#include <apps/common/camera/PCameraHost.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeRegister.h>

#include <PDip/PImage.h>

#include <support/FolderTest.h>

#include <QColor>
#include <QMainWindow>
#include <QSignalSpy>

/// A test of a part of the window, with two fake cameras, Fake-1 and Fake-2, and its own settings
/// and capture folder.
class FakeCameras : public FolderTest {
protected:
    FakeCameras();
    ~FakeCameras() override;

    /// Opens this camera and puts it in front.
    void open(const QString& id);
    /// Has the camera in front, with this device, deliver a live frame, and waits until it is
    /// shown.
    void showFrame(FakeDevice& device, const PImage& image);
    /// A picture of 40 x 30 pixels, the left half of one colour and the right half of the other.
    static PImage halves(const QColor& left, const QColor& right);
    /// Removes the first camera, as unplugging does.
    void unplugFirst();
    /// The last message that this signal emitted; empty if it emitted none.
    static QString lastMessage(const QSignalSpy& messages);
    QString captureFolder() const { return path(u"captures"_qs); }

    FakeDevice* const first = new FakeDevice("Fake", "1"); // the register's
    FakeDevice* const second = new FakeDevice("Fake", "2");
    FakeRegister* const cameras = new FakeRegister({first, second}); // the host's
    PCameraHost host;
    PRecordings recordings;
    QMainWindow window;
    const PViewActions& actions = *new PViewActions(&window); // the window's, like the panels
    PDockPanels& panels =
        *new PDockPanels(&window, recordings, std::make_shared<PMemoryLogSink>(10));
    PCameraTabs* const tabs; // likewise

private:
    PCameraTabs* makeTabs();
};
