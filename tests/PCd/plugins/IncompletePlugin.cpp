// SPDX-License-Identifier: MIT
#include <PCd/plugins/IncompletePlugin.h>

// A variable, not a function: those are looked up when the library is loaded.
extern int pcdTestSymbolThatNobodyHas;

IncompletePlugin::IncompletePlugin() {
    pcdTestSymbolThatNobodyHas = 1;
}
