// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimFunctionNames.h>

#include <dlfcn.h>

namespace {

/// This library, whatever its file is called; null if it is part of a program.
void* ownLibrary() {
    static const char inThisLibrary = 0;
    Dl_info info{};
    return dladdr(&inThisLibrary, &info) == 0 ? nullptr
                                              : dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD);
}

} // namespace

bool PSimFunctionNames::isKnown(const QByteArray& name) {
    // What the library exports is the list: one of its own would have to follow each change.
    static void* const library = ownLibrary();
    return name.startsWith("Toupcam_") && dlsym(library, name.constData()) != nullptr;
}
