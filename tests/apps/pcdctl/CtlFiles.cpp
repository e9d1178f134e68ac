// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>

#include <QStringList>

#include <sys/resource.h>

namespace {

QString colourName(QRgb colour) {
    switch (colour) {
    case qRgb(255, 0, 0):
        return u"red"_qs;
    case qRgb(0, 255, 0):
        return u"green"_qs;
    case qRgb(0, 0, 255):
        return u"blue"_qs;
    case qRgb(0, 0, 0):
        return u"black"_qs;
    default:
        return u"#%1"_qs.arg(colour, 8, 16, QChar(u'0'));
    }
}

} // namespace

QString patchColours(const QImage& picture) {
    if (picture.isNull())
        return u"no picture"_qs;
    QStringList names;
    for (int patch = 0; patch < 3; ++patch) {
        // Each patch is a sixth of the width, with a twelfth of black on either side.
        const int x = picture.width() * (2 + 4 * patch) / 12;
        names.append(colourName(picture.pixel(x, picture.height() / 2)));
    }
    names.append(colourName(picture.pixel(0, 0)));
    return names.join(u' ');
}

void limitFileSize(unsigned long bytes) {
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}
