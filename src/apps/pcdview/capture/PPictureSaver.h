// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/hang/PFilesInProgress.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PWriteMemory.h>

#include <PCd/frame/PDeviceFrame.h>

#include <PCore/work/PPostedCalls.h>
#include <PCore/work/PWorkQueue.h>

#include <QObject>

/// Saves single pictures, one after the other, on a thread of its own: a large PNG takes seconds.
/// The GUI thread.
class PPictureSaver : public QObject {
    Q_OBJECT

public:
    /// One picture to save, and where.
    struct Job {
        QString path;
        PDeviceFrame frame;
        PPictureNotes notes;
        PPictureFile::Existing existing = PPictureFile::Existing::Keep;
    };

    /// `byteLimit`: the limit on waiting pictures, in bytes of pixels.
    explicit PPictureSaver(std::size_t byteLimit = PWriteMemory::defaultLimit(),
                           QObject* parent = nullptr);
    /// Saves the pictures that still wait, then returns.
    ~PPictureSaver() override;

    /// Saves a picture in the format that its path's ending selects, and creates the folder if
    /// needed; finished() reports the result. A picture that would exceed the limit is not saved;
    /// one larger than the limit is accepted if nothing waits.
    void save(Job job);
    /// The number of pictures that wait or are being saved.
    int unsaved() const { return m_unsaved; }
    /// Waits until there are none, and emits finished() for those that waited.
    void waitUntilSaved();

signals:
    /// unsaved() has changed.
    void unsavedChanged(int pictures);
    /// A picture was saved; or it was not, and `reason` is not empty.
    void finished(const QString& path, const QString& reason);

private:
    void countUnsaved(int change);
    void report(const QString& path, const QString& reason);

    bool m_isClosing = false;
    int m_unsaved = 0;
    PPostedCalls m_results;
    PWorkQueue m_work; // after them: it posts results until it is stopped
    PFilesInProgress m_files;
};
