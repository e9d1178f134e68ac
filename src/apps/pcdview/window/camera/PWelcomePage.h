// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;

/// Shown while no camera is open: explains why, and what to do. The GUI thread.
class PWelcomePage : public QWidget {
    Q_OBJECT

public:
    /// What the page has to explain.
    struct Situation {
        QString problem;          ///< why no camera can be found at all; empty: one could
        QString sdk;              ///< the library in use
        bool isSimulated = false; ///< that library simulates its cameras
        int camerasPresent = 0;
    };

    explicit PWelcomePage(QWidget* parent = nullptr);

    /// Shows the advice for this situation.
    void setSituation(const Situation& situation);

signals:
    /// The user wants to search for cameras again.
    void searchRequested();
    /// The user wants to try the program with simulated cameras.
    void simulationRequested();

private:
    static QStringList adviceOfScene();
    static QStringList adviceFor(const Situation& situation);

    QLabel* m_title; // children
    QLabel* m_text;
    QWidget* m_simulate;
};
