// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PCameraHost.h>
#include <apps/pcdview/window/PCameraListPanel.h>

#include <QStackedWidget>

class PCameraPage;
class PDevice;
class PWelcomePage;
class QTabWidget;

/// The open cameras, each in a tab of its own; what to do, where none is. Follows cameras as they
/// come and go. The GUI thread.
class PCameraDesk : public QStackedWidget {
    Q_OBJECT

public:
    /// `problem`: why no camera can be found at all; empty if one could.
    PCameraDesk(PCameraHost& host, QString problem, QWidget* parent = nullptr);
    /// Closes all cameras.
    ~PCameraDesk() override;

    /// Opens the camera that a person has named (see PDeviceManager::select), or shows the tab it
    /// has. Fails with the reason.
    PStatus open(const QString& camera);
    /// Opens the first camera, if there is one and none is open.
    void openFirst();
    void closeCurrent();

    /// The tab in front, or null.
    PCameraPage* currentPage() const;
    /// The cameras that are there or open, for a list.
    QList<PCameraListPanel::Entry> entries() const;

public slots:
    void search();

signals:
    /// Another tab is in front, or none.
    void currentPageChanged(PCameraPage* page);
    /// The camera of the tab in front was unplugged, came back, was started or stopped.
    void currentStateChanged();
    /// A tab was made.
    void pageAdded(PCameraPage* page);
    /// entries() has changed.
    void entriesChanged();
    void simulationWanted();

private:
    void onArrival(PDevice* device);
    void onDeparture(PDevice* device);
    PStatus openDevice(PDevice* device);
    PCameraPage* addPage(PDevice* device);
    PCameraPage* pageOf(const QString& id) const;
    PCameraPage* pageAt(int index) const;
    void closePage(int index);
    void showState(PCameraPage* page);
    void showSituation();
    QString titleOf(const PCameraPage& page) const;

    PCameraHost& m_host;
    QString m_problem;
    PWelcomePage* m_welcome; // children
    QTabWidget* m_tabs;
};
