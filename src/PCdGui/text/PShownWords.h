// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QString>

class QWidget;

/// The texts that the user can read on any widget. The GUI thread.
class PCD_TEST_EXPORT PShownWords {
public:
    /// The texts of labels, buttons, group boxes, tabs and the items of combo boxes on the widget,
    /// and all tool tips, as they are now, one per line. Includes pages that a click brings to the
    /// front, but no other hidden parts.
    static QString on(const QWidget& widget);
    /// The same without the widget's own tool tip and text.
    static QString inside(const QWidget& widget);
};
