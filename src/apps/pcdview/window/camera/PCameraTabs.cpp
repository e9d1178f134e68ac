// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PCameraTabs.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PWelcomePage.h>

#include <PCd/device/PDevice.h>

#include <QTabBar>
#include <QTabWidget>

PCameraTabs::PCameraTabs(PCameraHost& host, QString problem, QWidget* parent)
    : QStackedWidget(parent)
    , m_host(host)
    , m_problem(std::move(problem))
    , m_welcome(new PWelcomePage)
    , m_tabs(new QTabWidget) {
    m_tabs->setDocumentMode(true);
    m_tabs->tabBar()->setObjectName(u"tabs"_qs);
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    addWidget(m_welcome);
    addWidget(m_tabs);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this,
            [this](int index) { emit closeRequested(pageAt(index)); });
    connect(m_tabs, &QTabWidget::currentChanged, this,
            [this](int index) { emit currentPageChanged(pageAt(index)); });
    connect(m_welcome, &PWelcomePage::searchRequested, this, &PCameraTabs::search);
    connect(m_welcome, &PWelcomePage::simulationRequested, this, &PCameraTabs::simulationRequested);
    connect(&host.manager(), &PDeviceManager::deviceAdded, this, &PCameraTabs::onArrival);
    connect(&host.manager(), &PDeviceManager::deviceRemoved, this, &PCameraTabs::onDeparture);
    showSituation();
}

PCameraTabs::~PCameraTabs() {
    m_tabs->disconnect(this);
    // Now, and not with the other children: their cameras need the manager's devices.
    while (m_tabs->count() > 0)
        delete m_tabs->widget(0);
}

PStatus PCameraTabs::open(const QString& camera) {
    const PDeviceManager::Selection selection = m_host.manager().select(camera);
    if (selection.device != nullptr)
        return openDevice(selection.device, Front::Yes);
    PCameraPage* const page = findPage(camera);
    if (page == nullptr)
        return PStatus::failure(selection.problem);
    m_tabs->setCurrentWidget(page); // of one that is unplugged
    return PStatus::Ok;
}

void PCameraTabs::openFirst() {
    const QList<PDevice*> devices = m_host.manager().devices();
    if (m_tabs->count() == 0 && !devices.isEmpty())
        openDevice(devices.first(), Front::Yes);
}

PStatus PCameraTabs::openDevice(PDevice* device, Front front) {
    PCameraPage* page = findPage(QString::fromUtf8(device->deviceId(false)));
    if (page == nullptr)
        page = addPage(std::make_unique<PViewCamera>(m_host.identify(device)));
    if (front == Front::Yes)
        m_tabs->setCurrentWidget(page);
    if (page->camera().device() != nullptr)
        return PStatus::Ok;
    const PStatus status = page->open(device);
    showState(page);
    return status;
}

void PCameraTabs::add(std::unique_ptr<PViewCamera> camera, const PStatus& opened) {
    PCameraPage* const page = addPage(std::move(camera));
    m_tabs->setCurrentWidget(page);
    page->showOpened(opened);
    showState(page);
}

PCameraPage* PCameraTabs::addPage(std::unique_ptr<PViewCamera> camera) {
    auto* const page = new PCameraPage(camera.release()); // its child
    connect(&page->camera(), &PViewCamera::stateChanged, this, [this, page] { showState(page); });
    emit pageAdded(page);
    m_tabs->addTab(page, toTitle(*page));
    showSituation();
    return page;
}

void PCameraTabs::closePage(PCameraPage* page) {
    m_tabs->removeTab(
        m_tabs->indexOf(page)); // first, so that everything that shows its camera disconnects
    delete page;
    showSituation();
    emit entriesChanged();
}

void PCameraTabs::setTabsShown(bool shown) {
    m_tabs->tabBar()->setVisible(shown);
}

void PCameraTabs::search() {
    m_host.manager().updateDevices();
    // Those that could not be opened when they arrived: the reason may no longer apply.
    for (PDevice* device : m_host.manager().devices()) {
        if (findPage(QString::fromUtf8(device->deviceId(false))) != nullptr)
            openDevice(device, Front::No);
    }
    openFirst();
    showSituation();
}

void PCameraTabs::onArrival(PDevice* device) {
    const bool isAwaited = findPage(QString::fromUtf8(device->deviceId(false))) != nullptr;
    // Not brought to the front: the user may be working in another tab.
    if (isAwaited || m_tabs->count() == 0)
        openDevice(device, Front::No);
    showSituation();
    emit entriesChanged();
}

void PCameraTabs::onDeparture(PDevice* device) {
    PCameraPage* const page = findPage(QString::fromUtf8(device->deviceId(false)));
    // It may not be open; or another device, with the same id, is by now.
    const QList<PDevice*> ended{device, nullptr};
    if (page != nullptr && ended.contains(page->camera().device())) {
        page->setMessage(QString()); // about a device that is gone
        page->camera().detach();
    }
    showSituation();
    emit entriesChanged();
}

PCameraPage* PCameraTabs::currentPage() const {
    return pageAt(m_tabs->currentIndex());
}

PCameraPage* PCameraTabs::pageAt(int index) const {
    return static_cast<PCameraPage*>(m_tabs->widget(index));
}

PCameraPage* PCameraTabs::findPage(const QString& id) const {
    for (int index = 0; index < m_tabs->count(); ++index) {
        if (pageAt(index)->camera().identity().id == id)
            return pageAt(index);
    }
    return nullptr;
}

QList<PCameraPage*> PCameraTabs::pages() const {
    QList<PCameraPage*> pages;
    for (int index = 0; index < m_tabs->count(); ++index)
        pages.append(pageAt(index));
    return pages;
}

QString PCameraTabs::toStateText(const PCameraPage* page) const {
    if (page == nullptr)
        return tr("ready");
    if (page->camera().device() == nullptr)
        return tr("not open");
    return page->camera().isRecorded() ? tr("recording") : tr("open");
}

QList<PCameraListPanel::Entry> PCameraTabs::entries() const {
    QList<PCameraListPanel::Entry> entries;
    QStringList present;
    for (const PDevice* device : m_host.manager().devices()) {
        const PCameraIdentity camera = m_host.identify(device);
        present.append(camera.id);
        entries.append({camera, toStateText(findPage(camera.id))});
    }
    for (int index = 0; index < m_tabs->count(); ++index) {
        const PCameraIdentity& camera = pageAt(index)->camera().identity();
        if (!present.contains(camera.id))
            entries.append({camera, tr("unplugged")});
    }
    return entries;
}

QString PCameraTabs::toTitle(const PCameraPage& page) const {
    const PCameraIdentity& camera = page.camera().identity();
    QString title = camera.model;
    if (!camera.serial.isEmpty())
        title += u" · "_qs + camera.serial;
    if (page.camera().state() == PViewCamera::State::Unplugged)
        title += u" — "_qs + tr("unplugged");
    return page.camera().isRecorded() ? u"● "_qs + title : title;
}

void PCameraTabs::showState(PCameraPage* page) {
    const int index = m_tabs->indexOf(page);
    if (index < 0)
        return;
    m_tabs->setTabText(index, toTitle(*page));
    emit entriesChanged();
    if (page == currentPage())
        emit currentStateChanged();
}

void PCameraTabs::showSituation() {
    PWelcomePage::Situation situation;
    situation.problem = m_problem;
    situation.sdk = m_host.sdk().path();
    situation.isSimulated = m_host.sdk().isSimulated();
    situation.camerasPresent = int(m_host.manager().devices().size());
    m_welcome->setSituation(situation);
    // The page behind must not prevent the window from being made small.
    const auto claim = m_tabs->count() > 0 ? QSizePolicy::Ignored : QSizePolicy::Preferred;
    m_welcome->setSizePolicy(claim, claim);
    setCurrentWidget(m_tabs->count() > 0 ? static_cast<QWidget*>(m_tabs) : m_welcome);
}

#include "moc_PCameraTabs.cpp"
