// SPDX-License-Identifier: MIT
#pragma once

#include <PTDevice/SimFixture.h>

#include <PCd/property/PDeviceProperty.h>

#include <PGui/WidgetHands.h>

#include <QAbstractButton>
#include <QWidget>

#include <stdexcept>

/// A camera with all properties that have panels, and these panels.
class PanelFixture : public SimFixture {
protected:
    PanelFixture();

    /// A small camera with cooler, fan and both kinds of trigger, at this frame rate.
    static SimCameraText fullCamera(int framesPerSecond = 200);
    void openCamera(const SimCameraText& camera);

    /// The test fails if there is none.
    PDeviceProperty* property(const char* id) const { return findProperty(*device, id); }

    /// A new panel of a property; the test fails if there is none.
    std::unique_ptr<QWidget> newPanel(const char* id) const;
    /// Likewise, shown and active; the journal and the log are then empty.
    std::unique_ptr<QWidget> openPanel(const char* id);

    std::unique_ptr<PTDevice> device;
};

/// A control of a panel, by its object name; the test fails if there is none.
template <typename Control>
Control* control(const std::unique_ptr<QWidget>& panel, const char* name) {
    auto* const found = panel->findChild<Control*>(QString::fromLatin1(name));
    if (found == nullptr)
        throw std::runtime_error(std::string("the panel has no ") + name);
    return found;
}

/// The first child of this class; the test fails if there is none.
template <typename Child>
Child* findPart(const QObject* parent) {
    auto* const found = parent->findChild<Child*>();
    if (found == nullptr)
        throw std::runtime_error("a control lacks a part");
    return found;
}

/// Enters a number into a range widget, as a user does.
inline void enterNumber(const QWidget* rangeWidget, const QString& text) {
    enter(findPart<PNumberField>(rangeWidget), text);
}

/// Clicks a check box, radio button or push button where it reacts.
void clickOn(QAbstractButton* button);

/// The title of a panel and the texts of its labels, buttons and choices.
QStringList shownTexts(const QWidget* panel);

/// The journal's lines of calls that set something.
std::vector<std::string> puts();
