// SPDX-License-Identifier: MIT
#include <start/FirstPaint.h>

#include <QWidget>

// An empty window: what every program with one takes until it is painted.

int main(int argc, char* argv[]) {
    FirstPaint application(argc, argv, [](const QObject*) { return true; });
    QWidget window;
    window.resize(1280, 800);
    window.show();
    return FirstPaint::exec();
}
