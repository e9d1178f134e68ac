// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTExtendedExposureControls.h>

#include "ui_PTExtendedExposure.h"

#include <array>
#include <type_traits>
#include <utility>

namespace {

using Form = Ui::PTExtendedExposure;
using Record = ExtendedExposureData;
using Changed = std::function<void()>;

/// The value of a control: spin boxes and range widgets have the same functions.
template <typename Widget>
struct ControlValue {
    static constexpr auto changed = &Widget::valueChanged;
    static auto of(const Widget* widget) { return widget->value(); }
    template <typename Value>
    static void set(Widget* widget, Value value) {
        widget->setValue(value);
    }
};

template <>
struct ControlValue<QCheckBox> {
    static constexpr auto changed = &QCheckBox::toggled;
    static bool of(const QCheckBox* box) { return box->isChecked(); }
    static void set(QCheckBox* box, bool on) { box->setChecked(on); }
};

template <>
struct ControlValue<QComboBox> {
    static constexpr auto changed = &QComboBox::currentIndexChanged;
    static int of(const QComboBox* box) { return box->currentIndex(); }
    static void set(QComboBox* box, int index) { box->setCurrentIndex(index); }
};

/// The functions for the control of one field.
struct Control {
    void (*show)(const Form&, const Record&);
    void (*read)(const Form&, Record&);
    void (*connect)(const Form&, const QObject* context, const Changed&);
};

template <auto Member, auto Field>
constexpr Control control() {
    using Widget = std::remove_pointer_t<std::decay_t<decltype(std::declval<Form>().*Member)>>;
    using Value = std::decay_t<decltype(std::declval<Record>().*Field)>;
    using Access = ControlValue<Widget>;
    return {[](const Form& form, const Record& d) { Access::set(form.*Member, d.*Field); },
            [](const Form& form, Record& d) {
                d.*Field = static_cast<Value>(Access::of(form.*Member));
            },
            [](const Form& form, const QObject* context, const Changed& changed) {
                QObject::connect(form.*Member, Access::changed, context, changed);
            }};
}

void showPageOfRecord(const Form& form, const Record& d) {
    PTExtendedExposureControls::showPage(form, d.capturemode);
}

void readPage(const Form& form, Record& d) {
    const bool isTrigger = !form.pbVideo->isChecked() && form.pbTrigger->isChecked();
    d.capturemode = isTrigger ? Record::Trigger : Record::Video;
}

void connectPages(const Form& form, const QObject* context, const Changed& changed) {
    for (QPushButton* page : {form.pbVideo, form.pbTrigger})
        QObject::connect(page, &QPushButton::toggled, context, changed);
}

/// In the order in which they are shown, because each may write the record back at once.
constexpr std::array controls{
    control<&Form::cbAutoExposure, &Record::autoexpenabled>(),
    control<&Form::exposureTarget, &Record::target>(),
    control<&Form::exposureGain, &Record::gain>(),
    control<&Form::exposureTime, &Record::exp>(),
    Control{showPageOfRecord, readPage, connectPages},
    control<&Form::cbTriggerMode, &Record::triggermode>(),
    control<&Form::sM, &Record::minutes>(),
    control<&Form::sSec, &Record::seconds>(),
    control<&Form::sMS, &Record::milliseconds>(),
    control<&Form::sUS, &Record::microseconds>(),
    control<&Form::spincount, &Record::spincount>(),
};

} // namespace

void PTExtendedExposureControls::show(const Ui::PTExtendedExposure& form,
                                      const ExtendedExposureData& d) {
    for (const Control& one : controls)
        one.show(form, d);
}

void PTExtendedExposureControls::showPage(const Ui::PTExtendedExposure& form, int capturemode) {
    if (capturemode == ExtendedExposureData::Video || capturemode == ExtendedExposureData::Trigger)
        form.stackedWidget->setCurrentIndex(capturemode);
}

ExtendedExposureData PTExtendedExposureControls::read(const Ui::PTExtendedExposure& form) {
    ExtendedExposureData d;
    for (const Control& one : controls)
        one.read(form, d);
    return d;
}

void PTExtendedExposureControls::connectAll(const Ui::PTExtendedExposure& form,
                                            const QObject* context,
                                            const std::function<void()>& changed) {
    for (const Control& one : controls)
        one.connect(form, context, changed);
}
