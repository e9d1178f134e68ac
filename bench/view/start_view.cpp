// SPDX-License-Identifier: MIT
#include <start/FirstPaint.h>

#include <apps/pcdview/PViewProgram.h>
#include <apps/pcdview/view/PImageView.h>

#include <cstdio>

// The viewer until it has painted the first picture of the camera. It takes its options.

namespace {

bool showsPicture(const QObject* widget) {
    const auto* const view = qobject_cast<const PImageView*>(widget);
    return view != nullptr && !view->image().isNull();
}

int complain(const QString& reason) {
    std::fprintf(stderr, "start_view: %s\n", qPrintable(reason));
    return 1;
}

} // namespace

int main(int argc, char* argv[]) {
    FirstPaint application(argc, argv, showsPicture);
    QApplication::setOrganizationName(u"pcd"_qs);
    QApplication::setApplicationName(u"pcdview"_qs);
    PViewOptions options;
    QString answer;
    PStatus status = PViewOptions::parse(QApplication::arguments(), options, answer);
    PViewProgram program;
    if (status.isOk())
        status = program.start(options);
    return status.isOk() ? program.run(options) : complain(status.reason());
}
