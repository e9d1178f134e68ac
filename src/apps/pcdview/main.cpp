// SPDX-License-Identifier: MIT
#include <apps/common/PEndSignals.h>
#include <apps/pcdview/PViewProgram.h>

#include <QApplication>

#include <cstdio>
#include <exception>

namespace {

constexpr int wrongUsage = 2;

void print(std::FILE* stream, const QString& text) {
    std::fputs((text + u'\n').toLocal8Bit().constData(), stream);
}

int runProgram() {
    PViewOptions options;
    QString answer;
    PStatus status = PViewOptions::parse(QApplication::arguments(), options, answer);
    if (status.isOk() && !answer.isEmpty()) {
        print(stdout, answer);
        return 0;
    }
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
    PEndSignals::watch();
    const QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("pcd"));
    QApplication::setApplicationName(QStringLiteral("pcdview"));
    QApplication::setApplicationVersion(QStringLiteral(PCD_VERSION));
    try {
        return runProgram();
    } catch (const std::exception& error) {
        print(stderr, u"pcdview: "_qs + QString::fromLocal8Bit(error.what()));
        return 1;
    }
}
