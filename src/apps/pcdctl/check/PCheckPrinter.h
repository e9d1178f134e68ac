// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/PCheckReport.h>
#include <apps/pcdctl/cli/PStatusLine.h>

/// Prints the results of a check as they come, for users. The main thread.
class PCheckPrinter {
public:
    /// Shows on a terminal what is examined now.
    void showCase(const QString& rule, const QString& where);
    /// The first failures of a rule, each with what was seen and the rule's reason; the others are
    /// only counted.
    void printFailure(const PCheckReport::Entry& entry, const QString& where, const QString& seen);
    /// One line: how the rule ended.
    void printRule(const PCheckReport::Entry& entry);

    /// Numbers of rules and cases, in one line.
    static QString describeTotals(const PCheckReport& report);

private:
    PStatusLine m_status;
};
