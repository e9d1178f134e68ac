// SPDX-License-Identifier: MIT
#include <figure/FigureProgram.h>
#include <frame/CallbackFigures.h>
#include <frame/DeliveryFigures.h>
#include <frame/MemoryFigures.h>

#include <QCoreApplication>

// What a frame costs on its way from the SDK's callback to the host, with the plugin as a host
// loads it and a stub of the SDK.

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    CallbackFigures::add();
    DeliveryFigures::add();
    MemoryFigures::add();
    return FigureProgram::run(argc, argv);
}
