// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPanel.h>

#include <QEvent>

PTPanel::PTPanel(QWidget* parent)
    : QWidget(parent)
    , m_life(std::make_unique<QObject>()) {
}

PTPanel::~PTPanel() {
    endLife();
}

QPointer<QObject> PTPanel::life() const {
    return m_life.get();
}

void PTPanel::setRetranslation(std::function<void()> setTexts) {
    m_setTexts = std::move(setTexts);
}

void PTPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && m_setTexts)
        m_setTexts();
}
