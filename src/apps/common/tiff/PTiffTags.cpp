// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffTags.h>

#include <apps/common/tiff/PTiffExif.h>

bool PTiffTags::writeTo(TIFF* tiff) const {
    return PTiffExif::writeTo(tiff, picture) && // first: it writes a directory of its own
           TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width) &&
           TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height) &&
           TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
           TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples) &&
           TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
           TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                        samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK) &&
           TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE) &&
           TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rowsPerStrip) &&
           (description.isEmpty() ||
            TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, description.constData()));
}
