// SPDX-License-Identifier: MIT
#pragma once

#include <QToolBar>

class PModeChooser;
class PViewActions;

/// The tool bar: the actions used most, and the mode of the camera. The GUI thread.
class PToolBar : public QToolBar {
    Q_OBJECT

public:
    explicit PToolBar(const PViewActions& actions, QWidget* parent = nullptr);

    /// The mode box, a child.
    PModeChooser& modes() const { return *m_modes; }

private:
    PModeChooser* m_modes; // child
};
