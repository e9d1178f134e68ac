// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraHost.h>
#include <apps/pcdview/window/panels/PCameraListPanel.h>

#include <QStackedWidget>

#include <memory>

class PCameraPage;
class PDevice;
class PViewCamera;
class PWelcomePage;
class QTabWidget;

/// The open cameras, each in its own tab, or the welcome page. Follows cameras as they come and go.
/// The GUI thread.
class PCameraTabs : public QStackedWidget {
    Q_OBJECT

public:
    /// `problem`: why no camera can be found at all; empty if one could.
    PCameraTabs(PCameraHost& host, QString problem, QWidget* parent = nullptr);
    /// Closes all cameras.
    ~PCameraTabs() override;

    /// Opens the camera that the user named (see PDeviceManager::select), in its tab or a new one,
    /// or only shows it if it is open. Fails with the reason.
    PStatus open(const QString& camera);
    /// Opens the first camera, if there is one and none is open.
    void openFirst();
    /// Shows a camera in a new tab, in front; it was opened before, with this result.
    void add(std::unique_ptr<PViewCamera> camera, const PStatus& opened);
    void closePage(PCameraPage* page);
    /// Shows or hides the tabs themselves; their pages stay.
    void setTabsShown(bool shown);

    /// The tab in front, or null.
    PCameraPage* currentPage() const;
    QList<PCameraPage*> pages() const;
    /// The cameras that are present or open, for a list.
    QList<PCameraListPanel::Entry> entries() const;

public slots:
    /// Searches for cameras, and tries again to open those that could not be opened.
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
    /// The user clicked to close this tab.
    void closeRequested(PCameraPage* page);
    /// The user wants to try the program with simulated cameras.
    void simulationRequested();

private:
    enum class Front { Yes, No };

    void onArrival(PDevice* device);
    void onDeparture(PDevice* device);
    PStatus openDevice(PDevice* device, Front front);
    PCameraPage* addPage(std::unique_ptr<PViewCamera> camera);
    PCameraPage* findPage(const QString& id) const;
    PCameraPage* pageAt(int index) const;
    void showState(PCameraPage* page);
    void showSituation();
    QString toStateText(const PCameraPage* page) const;
    QString toTitle(const PCameraPage& page) const;

    PCameraHost& m_host;
    QString m_problem;
    PWelcomePage* m_welcome; // children
    QTabWidget* m_tabs;
};
