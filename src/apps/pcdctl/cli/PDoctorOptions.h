// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PUsbId.h>

#include <PCore/PStatus.h>

#include <QCommandLineParser>
#include <QList>

#include <optional>

/// The options that only the command `doctor` has. A value; any thread.
struct PDoctorOptions {
    QList<PUsbId> udevIds;     ///< write rules for these
    bool udevForFound = false; ///< and for the devices on the bus that can be cameras
    QString ruleFile;          ///< where to; empty: to the standard output

    QString folder = u"."_qs;   ///< whose disk is measured
    std::optional<double> rate; ///< of the camera, in MB/s; none: measured
    QString report;             ///< file; empty: none

    /// True if only a udev rule is to be written.
    bool isForRule() const { return udevForFound || !udevIds.isEmpty(); }

    /// Takes these options from a parser that has them all. Fails with what is wrong and what was
    /// expected.
    PStatus read(const QCommandLineParser& parser);

private:
    PStatus readIds(const QStringList& texts);
};
