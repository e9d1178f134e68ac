// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PThread.h>

#include <PDip/PImage.h>

#include <toupcam/toupcam.h>

#include <QList>
#include <QMutex>
#include <QWaitCondition>

class PTDevice;

/// The pull-mode worker of one camera: takes SDK events from a queue, pulls the frames they
/// announce and passes them to the device. Idle until started with PThread::startThread(); must be
/// stopped before it is destroyed.
class PCD_EXPORT PTStreamThread : public PThread {
    Q_OBJECT

public:
    PTStreamThread(PTDevice* device, HToupCam handle);
    ~PTStreamThread() override;

    /// Queues an SDK event code. If more than 6 are waiting, all are dropped. Any thread.
    void pushEvent(unsigned int code);
    /// Queues an image. If more than 4 are waiting, all are dropped. Any thread.
    void pushData(const PImage& image);

    /// The loop. On the worker thread.
    void run() override;
    PStatus onStart() override;
    PStatus onStop() override;

private:
    friend class PTStreamThreadTest; // reads the queues

    class SequenceWatch;

    bool takeEvent(unsigned int* code);
    void handleEvent(unsigned int code, SequenceWatch& sequence);
    void pullLive(SequenceWatch& sequence);
    void pullStill();

    PTDevice* device;
    QList<unsigned int> events;
    QWaitCondition wake;
    QMutex lock; // guards both queues: filled by any thread, emptied by the loop
    QList<PImage> images;
    HToupCam handle;
    PImage spareImage; // part of the object's layout; not used
};
