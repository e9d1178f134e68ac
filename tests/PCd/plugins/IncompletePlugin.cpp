// SPDX-License-Identifier: MIT
#include <PCd/plugins/IncompletePlugin.h>

// A variable, not a function: variables are resolved when the library is loaded.
extern int pcdTestSymbolThatNobodyHas;

IncompletePlugin::IncompletePlugin() {
    pcdTestSymbolThatNobodyHas = 1;
}

#include "moc_IncompletePlugin.cpp"
