// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/PCheckPrinter.h>
#include <apps/pcdctl/check/PCheckRunner.h>
#include <apps/pcdctl/check/bench/PHangWatch.h>
#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <apps/common/camera/PCameraIdentity.h>

class PCtlHost;

/// One run of the command `check`: the examination of a camera, what is printed, and the files. The
/// main thread.
class PCheckRun {
public:
    PCheckRun(PCtlHost& host, PDevice* device, const QList<PCheckRule>& rules,
              const PCtlOptions& options);

    /// Examines the camera and prints the results. Done only if nothing failed and something was
    /// examined. If the driver does not return, neither does this: the process ends, when what is
    /// known was printed and saved.
    PCtlOutcome run();

private:
    PCtlOutcome finish();
    void printAsItComes();
    void printReport();
    PCtlOutcome save() const;
    PCtlOutcome judge() const;
    [[noreturn]] void endHung(PHangWatch::Milliseconds waited);
    void printHang(const QString& seen);

    const PCtlOptions& m_options;
    const PCameraIdentity m_camera;
    PHangWatch m_watch;
    PCheckBench m_bench;
    PCheckRunner m_runner;
    PCheckPrinter m_printer;
};
