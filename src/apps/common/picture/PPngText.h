// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureMetadata.h>

#include <QByteArray>

#include <png.h>

#include <vector>

/// The text fields of a PNG file, as libpng takes them. One thread.
class PPngText {
public:
    explicit PPngText(const PPictureMetadata& notes);

    /// Sets them in the file's information. libpng may jump out of it, as its caller arranged.
    void setIn(png_structp png, png_infop info);

private:
    struct Field {
        QByteArray key;
        QByteArray text;
        int kind;
    };

    static Field makeField(const QString& key, const QString& text);

    std::vector<Field> m_fields;
    std::vector<png_text> m_references; ///< to the fields
};
