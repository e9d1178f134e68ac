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

/// Sets each control to its field. For the capture mode only the page is set: the panel sets the
/// buttons.
void show(const Ui::PTExtendedExposure& form, const ExtendedExposureData& d);

/// Shows the page of a capture mode; does nothing if there is no such mode.
void showPage(const Ui::PTExtendedExposure& form, int capturemode);

/// The record that the controls show.
ExtendedExposureData read(const Ui::PTExtendedExposure& form);

/// Reports each change of a control, as long as `context` exists.
void connectAll(const Ui::PTExtendedExposure& form, const QObject* context,
                const std::function<void()>& changed);

} // namespace PTExtendedExposureControls
