// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashReport.h>
#include <apps/common/program/PArgumentText.h>
#include <apps/common/program/PExceptionText.h>
#include <apps/common/program/PStandardStreams.h>
#include <apps/common/program/PTerminationSignals.h>
#include <apps/pcdview/PViewProgram.h>

#include <PCore/PPrintableText.h>

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

/// False where Qt would abort the program because there is no display.
bool hasDisplay(int argc, char* argv[]) {
    const auto isPlatformOption = [](const char* word) { return QByteArray(word) == "-platform"; };
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
           std::any_of(argv + 1, argv + argc, isPlatformOption);
}

void print(std::FILE* stream, const QString& text) {
    std::fputs((PPrintableText::toLines(text) + u'\n').toLocal8Bit().constData(), stream);
}

int runProgram(PStatus status, bool canShow) {
    PViewOptions options;
    QString answer;
    if (status.isOk())
        status = PViewOptions::parse(QApplication::arguments(), options, answer);
    if (status.isOk() && !answer.isEmpty()) {
        print(stdout, answer);
        return 0;
    }
    if (status.isOk() && !canShow && options.grab.isEmpty()) {
        print(stderr, u"pcdview: there is no display to open a window on: expected DISPLAY or "
                      "WAYLAND_DISPLAY to name one, or --grab FILE for a picture of it"_qs);
        return failed;
    }
    if (status.isOk() && options.hangingViewer != 0)
        return PViewProgram::runHangNotice(options);
    PViewProgram program;
    if (status.isOk())
        status = program.start(options);
    if (status.isOk())
        return program.run(options);
    print(stderr, u"pcdview: "_qs + status.reason());
    return wrongUsage;
}

} // namespace

int main(int argc, char* argv[]) {
    PStandardStreams::reserve();
    PTerminationSignals::watch();
    PCrashReport::install(argc, argv, QStringLiteral(PCD_VERSION));
    const PStatus arguments = PArgumentText::check(argc, argv); // before Qt takes its own out
    const bool canShow = hasDisplay(argc, argv);
    if (!canShow)
        qputenv("QT_QPA_PLATFORM", "offscreen"); // --help and --grab need no display
    const QApplication application(argc, argv);
    QApplication::setOrganizationName(u"pcd"_qs);
    QApplication::setApplicationName(u"pcdview"_qs);
    QApplication::setApplicationVersion(QStringLiteral(PCD_VERSION));
    try {
        return runProgram(arguments, canShow);
    } catch (const std::exception& error) {
        print(stderr, u"pcdview: "_qs + PExceptionText::of(error));
        return failed;
    }
}
