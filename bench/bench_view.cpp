// SPDX-License-Identifier: MIT
#include <view/ViewBench.h>
#include <view/ViewReport.h>

#include <QCommandLineParser>
#include <QSettings>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <exception>

// The viewer with a camera of 20 megapixels and 30 frames a second: how long the user waits for it.
// Fails if a ledger does not balance, or if nothing was measured.

namespace {

int complain(const QString& problem) {
    std::fprintf(stderr, "bench_view: %s\n", problem.toLocal8Bit().constData());
    return 1;
}

void describe(const QString& folder) {
    const QStorageInfo disk(folder);
    std::printf("Platform %s, recordings on %s (%s)\n",
                QGuiApplication::platformName().toUtf8().constData(), disk.device().constData(),
                disk.fileSystemType().constData());
}

int measure(TimedApplication& application, const QString& folder, double seconds) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder + u"/settings"_qs);
    describe(folder);
    ViewBench bench(application, folder, seconds);
    const PStatus status = bench.run();
    if (!status.isOk())
        return complain(status.reason());
    ViewReport::print(bench.figures());
    int code = 0;
    for (const QString& problem : bench.figures().problems())
        code = complain(problem);
    return code;
}

int run(TimedApplication& application) {
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({u"seconds"_qs, u"How long each thing is done"_qs, u"number"_qs, u"10"_qs});
    parser.addOption({u"folder"_qs, u"Where recordings of 2.4 GB are made and removed"_qs,
                      u"path"_qs, QDir::tempPath()});
    parser.process(application);
    const double seconds = parser.value(u"seconds"_qs).toDouble();
    if (seconds <= 0)
        return complain(u"--seconds takes a number above 0"_qs);
    const QTemporaryDir folder(parser.value(u"folder"_qs) + u"/bench_view-XXXXXX"_qs);
    return folder.isValid() ? measure(application, folder.path(), seconds)
                            : complain(folder.errorString());
}

} // namespace

int main(int argc, char* argv[]) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    TimedApplication application(argc, argv);
    QApplication::setOrganizationName(u"pcd"_qs);
    QApplication::setApplicationName(u"pcdview"_qs);
    try {
        return run(application);
    } catch (const std::exception& error) {
        return complain(QString::fromLocal8Bit(error.what()));
    }
}
