// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

class PCameraPage;
class PViewCamera;
class QLabel;
class QStatusBar;

/// The fields of a status bar: the number of pictures to be saved; the pixel under the cursor, the
/// zoom, pace, exposure, sensor temperature and ledger of a camera. The GUI thread.
class PStatusFields : public QObject {
    Q_OBJECT

public:
    /// Adds the fields to the bar, which owns this.
    explicit PStatusFields(QStatusBar* bar);

    /// The bar that the fields are in.
    QStatusBar* bar() const { return m_bar; }

    /// Shows a camera as it is now; null: none.
    void showCamera(const PCameraPage* page);
    /// Shows the pixel under its cursor and its zoom.
    void showView(const PCameraPage* page);
    /// Shows the number of pictures that are still to be saved, of all cameras; nothing for 0.
    void showUnsaved(int pictures);

private:
    static QString toPaceText(const PViewCamera& camera);
    static QString waitingText(std::chrono::seconds left);
    QLabel* addField(QStatusBar* bar, const char* name);

    QStatusBar* m_bar;
    QLabel* m_unsaved; // children of the bar
    QLabel* m_pixel;
    QLabel* m_zoom;
    QLabel* m_size;
    QLabel* m_pace;
    QLabel* m_exposure;
    QLabel* m_temperature;
    QLabel* m_ledger;
};
