// SPDX-License-Identifier: MIT
#pragma once

#include <PTDevice/panels/PanelFixture.h>

#include <PCdPlugins/PTDevice/PTExtendedExposure.h>

#include <PGui/PDoubleRangeWidget.h>
#include <PGui/PRangeWidget.h>

#include <support/WaitUntil.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>

/// A camera with its exposure panel.
class ExposurePanelFixture : public PanelFixture {
protected:
    PTExtendedExposure* exposure() const {
        return findProperty<PTExtendedExposure>(*device, "extexposure");
    }
    void set(const ExtendedExposureData& d) { exposure()->setValue(QVariant::fromValue(d)); }
    ExtendedExposureData stored() const { return exposure()->value(); }

    /// Opens the panel after the camera was set to this record.
    void openWith(const ExtendedExposureData& d) {
        set(d);
        panel = openPanel("extexposure");
    }

    /// A short triggered exposure by software.
    static ExtendedExposureData triggerRecord() {
        ExtendedExposureData d;
        d.capturemode = ExtendedExposureData::Trigger;
        d.seconds = 0;
        d.milliseconds = 1;
        return d;
    }

    static PImage smallImage() {
        PImage image;
        EXPECT_TRUE(image.create(8, 4, PDIP::ColorFormat::Bgr));
        return image;
    }

    /// Ends the stream. By then every image that was being delivered has arrived, and so has the
    /// snapshot made of it.
    void stopAndDeliver() {
        device->stopStream();
        EXPECT_TRUE(waitUntil([this] { return device->frameLedger().waiting == 0; }));
        // A snapshot needs one more iteration of the event loop, and frames come in slices.
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
    }

    QPushButton* button(const char* name) const { return control<QPushButton>(panel, name); }
    QSpinBox* box(const char* name) const { return control<QSpinBox>(panel, name); }
    QCheckBox* automatic() const { return control<QCheckBox>(panel, "cbAutoExposure"); }
    QComboBox* triggerMode() const { return control<QComboBox>(panel, "cbTriggerMode"); }
    PRangeWidget* target() const { return control<PRangeWidget>(panel, "exposureTarget"); }
    PRangeWidget* gain() const { return control<PRangeWidget>(panel, "exposureGain"); }
    PDoubleRangeWidget* time() const { return control<PDoubleRangeWidget>(panel, "exposureTime"); }
    int page() const { return control<QStackedWidget>(panel, "stackedWidget")->currentIndex(); }

    /// The names of those controls that are enabled.
    std::vector<std::string> usable(const std::vector<const char*>& names) const {
        std::vector<std::string> found;
        for (const char* name : names) {
            if (control<QWidget>(panel, name)->isEnabled())
                found.emplace_back(name);
        }
        return found;
    }

    std::unique_ptr<QWidget> panel;
};
