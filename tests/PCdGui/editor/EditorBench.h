// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/PCdGui.h>
#include <PCdGui/TypedProperties.h>
#include <PCdGui/editor/PPropertyEditor.h>

#include <PCd/FakeDevice.h>
#include <PGui/WidgetHands.h>
#include <support/RowTest.h>

#include <QSignalSpy>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>

/// A property of a fake device with its editor in a window, and another widget to move the focus
/// to.
template <typename Property>
class EditorBench : public testing::Test {
protected:
    template <typename... Arguments>
    explicit EditorBench(Arguments&&... arguments)
        : device(std::make_unique<FakeDevice>())
        , property(new Property(std::forward<Arguments>(arguments)...)) {
        device->makeProperties = [this] { return QList<PDeviceProperty*>{property}; };
        device->supportProperties();
    }

    /// To be called when the test has prepared the property.
    void open() {
        editor = qobject_cast<PPropertyEditor*>(PCdGui::createEditor(property));
        ASSERT_NE(editor, nullptr);
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(editor);
        layout->addWidget(elsewhere);
        window.setLocale(QLocale::c());
        ASSERT_TRUE(showActive(&window));
    }

    template <typename Part>
    Part* part() const {
        return editor->findChild<Part*>();
    }

    /// Runs what was deferred to the next iteration of the event loop.
    static void turn() { QCoreApplication::processEvents(); }

    /// The device changes its value by itself, and reports that.
    template <typename T>
    void deviceBecomes(const T& value) {
        property->inDevice = value;
        property->updateValueFromDevice();
    }

    std::unique_ptr<FakeDevice> device;
    Property* property; // the device's
    QWidget window;
    PPropertyEditor* editor = nullptr; // the window's
    QLineEdit* elsewhere = new QLineEdit(&window);
};

struct AnswerRow {
    const char* name;
    FakeAnswer answer;
};

/// A bench of the kind `Bench` whose device refuses every value, whatever its setter returns.
template <typename Bench>
class RefusingBench : public Bench, public WithRow<AnswerRow> {
protected:
    RefusingBench() {
        this->property->refuses = true;
        this->property->answer = GetParam().answer;
        this->open();
    }
};

constexpr AnswerRow everyAnswer[] = {{"when_it_returns_false", FakeAnswer::Truth},
                                     {"when_it_returns_true", FakeAnswer::Taken},
                                     {"when_it_returns_the_opposite", FakeAnswer::Opposite}};
