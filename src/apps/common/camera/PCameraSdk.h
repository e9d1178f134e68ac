// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>
#include <QStringList>

/// The camera SDK library a program runs on: the maker's or the simulated one. The main thread,
/// before the plugins are loaded; once loaded, the library stays until the program ends.
class PCameraSdk {
public:
    /// Loads the library of this choice and points the plugins to it. "sim": the simulated one that
    /// comes with the program; "auto": the one TOUPCAM_LIBRARY names, else the system's, else, if
    /// there is none, the simulated one; anything else is the path of a library. Fails with the
    /// library and the reason, also if the system's cannot be loaded.
    PStatus load(const QString& choice);

    /// Makes the simulated SDK show the cameras of a scene file. Fails with the file and what is
    /// wrong with it. Only if isSimulated().
    PStatus loadScene(const QString& file);

    /// Unplugs a simulated camera, or plugs it in again; as with a real one, the program learns of
    /// it a moment later. Fails, with the reason, if the library cannot do this, or has no camera
    /// with this serial number whose state that changes. At any time, on any thread.
    PStatus setPlugged(const QString& serial, bool plugged) const;

    /// Where the library is from.
    enum class Origin { Simulator, Environment, System, Path };
    Origin origin() const { return m_origin; }

    bool isSimulated() const { return m_simulated; }
    /// True if "auto" found no other library than the simulated one, or not even that. Then load()
    /// failed, but cameras of plugins that need no SDK can still be used.
    bool isFallback() const { return m_fallback; }
    /// Why "auto" could not load the system's library; empty if it did not try, or could.
    const QString& systemFailure() const { return m_systemFailure; }
    /// The library's file.
    const QString& path() const { return m_path; }
    /// The version that the library reports; empty if it reports none.
    const QString& version() const { return m_version; }
    /// Which of these functions the library does not export. Only after load().
    QStringList findMissing(const QStringList& functions) const;

private:
    PStatus loadAutomatic();
    PStatus open(const QString& path, Origin origin);
    PStatus inspect(const QString& asked);

    void* m_library = nullptr;
    QString m_path;
    QString m_version;
    QString m_systemFailure;
    Origin m_origin = Origin::Path;
    bool m_simulated = false;
    bool m_fallback = false;
};
