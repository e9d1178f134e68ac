// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>

/// The camera SDK library a program runs on: the maker's or the simulated one. The main thread,
/// before the plugins are loaded; once loaded, the library stays until the program ends.
class PCameraSdk {
public:
    /// Loads the library of this choice and points the plugins to it. "sim": the simulated one that
    /// comes with the program; "auto": the one TOUPCAM_LIBRARY names, else the system's, else the
    /// simulated one; anything else is the path of a library. Fails with the library and the
    /// reason.
    PStatus load(const QString& choice);

    /// Makes the simulated SDK show the cameras of a scene file. Fails with the file and what is
    /// wrong with it. Only if isSimulated().
    PStatus loadScene(const QString& file);

    bool isSimulated() const { return m_simulated; }
    /// True if "auto" found no other library than the simulated one.
    bool isFallback() const { return m_fallback; }
    /// The library's file.
    const QString& path() const { return m_path; }
    /// The version that the library reports; empty if it reports none.
    const QString& version() const { return m_version; }

private:
    PStatus loadAutomatic();
    PStatus open(const QString& path);
    PStatus inspect(const QString& asked);

    void* m_library = nullptr;
    QString m_path;
    QString m_version;
    bool m_simulated = false;
    bool m_fallback = false;
};
