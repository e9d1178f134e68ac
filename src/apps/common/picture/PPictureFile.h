// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureNotes.h>
#include <apps/common/picture/PPngEncoder.h>

#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QImage>
#include <QStringList>

/// Writes pictures to files; a file is either complete or absent. Any thread.
class PPictureFile {
    Q_DECLARE_TR_FUNCTIONS(PPictureFile)

public:
    /// What happens to an older file of the same name.
    enum class Existing {
        Replace, ///< an older file of this name is replaced, in one step
        Keep,    ///< an older file of this name is left alone, and saving fails
    };
    using Content = PPngEncoder::Content;

    /// The file name extensions that select the format: ".png" …
    static QStringList endings();
    /// Fails, naming the file and what was expected, if the name ends otherwise.
    static PStatus checkName(const QString& path);
    /// Creates the folder of a file if needed. Fails with the reason if the file cannot be created.
    static PStatus prepareFolder(const QString& path);

    /// Saves the picture with its notes in the format of its ending: TIFF with its tags and an EXIF
    /// directory, PNG with text fields, pHYs where the size of a pixel is known, and eXIf. Fails
    /// with the file and the reason.
    static PStatus save(const QString& path, const QImage& image, const PPictureNotes& notes,
                        Existing existing, Content content);
};
