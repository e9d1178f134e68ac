// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PThread.h>

#include <PDip/PImage.h>

#include <toupcam/toupcam.h>

#include <QList>
#include <QMutex>
#include <QWaitCondition>

class PTDevice;

/// The pull-mode worker of one camera: takes SDK events off a queue, pulls the frames they announce
/// and hands them to the device. Idle until somebody starts it (PThread::startThread), and to be
/// stopped the same way before it is destroyed.
class PTStreamThread : public PThread {
    Q_OBJECT

public:
    PTStreamThread(PTDevice* device, HToupCam handle);
    ~PTStreamThread() override;

    /// Queues an SDK event code. More than 6 waiting are dropped all together. Any thread.
    void pushEvent(unsigned int code);
    /// Queues an image. More than 4 waiting are dropped all together. Any thread.
    void pushData(const PImage& image);

    /// The loop. On the worker thread.
    void run() override;
    PStatus onStart() override;
    PStatus onStop() override;

private:
    friend class PTStreamThreadTest; // looks at the queues

    class SequenceWatch;

    bool takeEvent(unsigned int* code);
    void handleEvent(unsigned int code, SequenceWatch& sequence);
    void pullLive(SequenceWatch& sequence);
    void pullStill();

    PTDevice* device;
    QList<unsigned int> events;
    QWaitCondition wake;
    QMutex lock; // guards both queues: fed by any thread, taken from by the loop
    QList<PImage> images;
    HToupCam handle;
    PImage spareImage; // part of the object's layout; nothing uses it
};
