// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>

#include <functional>

class QObject;

namespace Ui {
class PTExtendedExposure;
}

/// The controls of the exposure panel's form, one for each field of the record. The GUI thread.
namespace PTExtendedExposureControls {

/// Sets each control to its field. For the capture mode that is the page alone: which of its
/// buttons is pressed, the panel decides.
void show(const Ui::PTExtendedExposure& form, const ExtendedExposureData& d);

/// Goes to the page of a capture mode; to none if there is no such mode.
void showPage(const Ui::PTExtendedExposure& form, int capturemode);

/// The record that the controls show.
ExtendedExposureData read(const Ui::PTExtendedExposure& form);

/// Has each change of a control reported, for as long as `context` lives.
void connectAll(const Ui::PTExtendedExposure& form, const QObject* context,
                const std::function<void()>& changed);

} // namespace PTExtendedExposureControls
