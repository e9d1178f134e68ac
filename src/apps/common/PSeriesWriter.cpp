// SPDX-License-Identifier: MIT
#include <apps/common/PSeriesWriter.h>

#include <apps/common/PPictureFile.h>

PStatus PSeriesWriter::write(const PDeviceFrame& frame, quint64 number) {
    return PPictureFile::save(m_files.path(number), frame.image.toQImage(),
                              pictureTextOf(m_camera, frame.stamp.get()),
                              PPictureFile::Existing::Keep, PPictureFile::Effort::Fast);
}
