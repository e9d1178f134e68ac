// SPDX-License-Identifier: MIT
#include "PTPanel.h"

PTPanel::PTPanel(QWidget* parent)
    : QWidget(parent)
    , m_life(std::make_unique<QObject>()) {
}

PTPanel::~PTPanel() = default;

QPointer<QObject> PTPanel::life() const {
    return m_life.get();
}
