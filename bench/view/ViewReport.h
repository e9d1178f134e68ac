// SPDX-License-Identifier: MIT
#pragma once

#include <view/ViewFigures.h>

/// Prints the figures of a run as tables on the standard output.
class ViewReport {
public:
    static void print(const ViewFigures& figures);

private:
    static void printStalls(const ViewFigures& figures);
    static void printThread(const ViewFigures& figures);
    static void printShown(const ViewFigures& figures);
    static void printPainting(const ViewFigures& figures);
    static void printRecordings(const ViewFigures& figures);
    static void printLedgers(const ViewFigures& figures);
};
