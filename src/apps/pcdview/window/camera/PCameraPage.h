// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QSize>
#include <QWidget>

#include <memory>

class PDevice;
class PImageView;
class PViewCamera;
class QLabel;
struct PDeviceFrame;
struct PDeviceSettings;

/// The tab of one camera: its live picture, and above it messages about its state. The GUI thread.
class PCameraPage : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of the camera.
    explicit PCameraPage(PViewCamera* camera, QWidget* parent = nullptr);

    PViewCamera& camera() const { return *m_camera; }
    PImageView& view() const { return *m_view; }

    /// Opens the camera with this device and says so in the view, and then that the first picture
    /// is awaited. Fails with the reason, which is shown above the picture.
    PStatus open(PDevice* device);
    /// Says how opening the camera ended.
    void showOpened(const PStatus& status);
    /// Shows a sentence above the picture; if it is empty, the camera's state is shown.
    void setMessage(const QString& message);
    /// The size of a pixel of the sensor on the specimen, in micrometres, stored for this camera;
    /// 0: unknown.
    double pixelSize() const;
    void setPixelSize(double micrometres);
    /// The size of a pixel of the picture; a smaller mode or binning combines several pixels of the
    /// sensor.
    double pixelSizeOfPicture() const { return pixelSize() * m_pixelScale; }

    /// Sets the region of the sensor that this region of the picture shows, as closely as the
    /// camera accepts; if it cannot be set, a message says why.
    void useRegion(const QRect& inPicture);
    /// Goes back to the whole sensor.
    void useWholeSensor();
    /// True if the camera has a region that can be set.
    bool hasRegions() const;

private:
    void showFrame(const PDeviceFrame& frame);
    void setRegion(const QRect& onSensor);
    void showState();
    QStringList stateSentences() const;
    QString noticeText() const;
    QString unpluggedText() const;
    QString pixelSizeKey() const;

    PViewCamera* m_camera; // children
    QLabel* m_banner;
    PImageView* m_view;
    QString m_message;
    double m_pixelScale = 1; ///< pixels of the sensor for one of the picture
    /// The picture's size and the settings that the scale was computed for.
    QSize m_scaledSize;
    std::shared_ptr<const PDeviceSettings> m_scaledSettings;
};
