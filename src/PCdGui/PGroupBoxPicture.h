// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>

class QStyleOptionGroupBox;
class QWidget;

/// The frame and background of a group box, without its title, as a picture from Qt's cache: for a
/// repaint of what lies on them. The GUI thread.
class PGroupBoxPicture {
public:
    /// True if a picture has the same pixels as the box that the style draws on this widget.
    static bool isExact(const QWidget& box);
    /// The picture of the box with this option.
    static QPixmap find(const QWidget& box, const QStyleOptionGroupBox& option);
};
