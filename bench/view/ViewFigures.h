// SPDX-License-Identifier: MIT
#pragma once

#include <view/CoreTime.h>
#include <view/Durations.h>
#include <view/TimedApplication.h>

#include <PCd/frame/PFrameLedger.h>

#include <QList>
#include <QString>

/// The measurements of one situation. A value type.
struct PhaseFigures {
    QString name;
    double seconds = 0;
    Durations late; ///< how late the main thread handled its events
    TimedApplication::Times events;
    CoreTime core; ///< of the main thread
    bool hasCamera = false;
    quint64 shown = 0; ///< frames given to the view
    quint64 delivered = 0;
};

/// One recording while the picture is live. A value type.
struct RecordingFigures {
    QString name;
    QString outcome; ///< the window's message about it
    int wanted = 0;  ///< frames
    double pace = 0; ///< planned frames per second
    qint64 frameBytes = 0;
    qint64 bytes = 0;        ///< in the file
    double seconds = 0;      ///< from the start to the complete file
    double plainSeconds = 0; ///< for writing as many bytes with nothing else to do
};

/// The ledger of one camera session. A value type.
struct SessionLedger {
    QString name;
    PFrameLedger ledger;
};

/// All figures of a run. A value type.
struct ViewFigures {
    QList<PhaseFigures> phases; ///< the first one is the limit: a window without a camera
    Durations smallPaints;      ///< painting a stream of 1 megapixel
    Durations largePaints;      ///< painting one of 20, in the same window
    QList<RecordingFigures> recordings;
    QList<SessionLedger> ledgers;

    /// The reasons why the run is invalid or failed, one sentence each; empty if there are none.
    QStringList problems() const;
};
