// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

/// The words that a user reads on a widget, whoever made it. The GUI thread.
class PShownWords {
public:
    /// The texts of labels, buttons, group boxes, tabs and the items of combo boxes on the widget,
    /// and all tool tips, as they read at the moment, a line each. Pages that a click brings to the
    /// front are in it, parts that are hidden otherwise are not.
    static QString on(const QWidget& widget);
    /// The same without the widget's own tool tip and text.
    static QString inside(const QWidget& widget);
};
