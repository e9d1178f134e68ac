// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <PCore/PExport.h>

#include <QObject>

/// A source of successive images.
class PCD_EXPORT PImageSource : public QObject {
    Q_OBJECT

public:
    explicit PImageSource(QObject* parent = nullptr)
        : QObject(parent) {}

signals:
    /// A new image, on the thread of this object.
    void imageChanged(PImage image);
};
