// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceManager.h>
#include <PCd/frame/PFrameLedger.h>

#include <PCore/PStatus.h>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <chrono>
#include <functional>

class PDevice;
class QWidget;

/// One session of a program with the simulated camera, from finding it to closing it: catalogue,
/// panels, a profile, modes, stream, still, recording, triggers, pull mode, hot-plugging. Its steps
/// and their SDK calls are the same each time. A step that does not succeed is noted, and the next
/// one is tried. The main thread.
class ScriptedSession : public QObject {
public:
    /// `folder`: for its files. `patience`: how long it waits for a camera or a frame after a fault
    /// has happened.
    ScriptedSession(const QString& folder, std::chrono::milliseconds patience);
    ~ScriptedSession() override;

    void run();

    /// The steps that did not succeed, in words.
    const QStringList& failures() const { return m_failures; }
    /// What it was given as true and was not: by a ledger, a report, a file. Always a defect.
    const QStringList& lies() const { return m_lies; }
    /// Values in the profile that could not be read from the camera and were saved anyway.
    const QStringList& unreadValues() const { return m_unreadValues; }
    /// Values that panels showed, and the camera did not have.
    const QStringList& wronglyShown() const { return m_wronglyShown; }

private:
    bool require(bool isMet, const QString& what);
    bool require(const PStatus& status, const QString& what);
    void expectTrue(bool isTrue, const QString& claim);
    bool waitFor(const std::function<bool()>& predicate);
    static bool isAnswering(PDevice& device);

    void openProgram();
    void closeProgram();
    bool hasCamera();
    void onDeviceAdded();
    void onDeviceRemoved(PDevice* device);
    void checkLedger(PDevice* device);

    void readCatalogue();
    std::unique_ptr<QWidget> openPanel();
    void showPanels();
    void readExposure();
    void checkPanel(const QWidget* panel);
    void setHue(int hue);
    void saveProfile();
    void checkProfile();
    void changeModes();
    bool startStream();
    void stopStream();
    void stream();
    void balanceWhite();
    void takeStill();
    void record();
    void checkRecording(const QString& path, quint64 written);
    void trigger();
    void restoreProfile();
    void pull();
    void pullFrames();
    void replugIdle();
    void replugStreaming();

    const QString m_folder;
    const std::chrono::milliseconds m_patience;
    std::unique_ptr<PDeviceManager> m_manager;
    QPointer<PDevice> m_device;
    quint64 m_callbacksBefore = 0; ///< data callbacks before this device
    bool m_isPushed = true;        ///< all its frames so far came through data callbacks
    bool m_mayBalance = false;     ///< a white balance began and was not seen to end
    int m_shown = 0;               ///< live frames
    int m_stills = 0;
    QStringList m_failures;
    QStringList m_lies;
    QStringList m_unreadValues;
    QStringList m_wronglyShown;
};
