// SPDX-License-Identifier: MIT
#include <QApplication>

// A program with Qt Widgets that does nothing: what every such program takes to start and end.

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    return 0;
}
