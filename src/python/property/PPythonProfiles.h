// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <PCd/frame/PDeviceMode.h>

#include <QList>

#include <memory>

class PPythonSession;

/// The modes of an open camera, and its settings as files. Throws PPythonError. The thread of
/// PPythonHost, with the interpreter's lock.
class PPythonProfiles {
public:
    explicit PPythonProfiles(std::shared_ptr<PPythonSession> session);

    /// The resolutions that the camera has.
    /// @internal Each as a dict.
    py::list modes() const;
    /// The resolution: a `Mode`, its id or its name can be assigned, also during a stream. None if
    /// the camera has none.
    py::object mode() const;
    /// Sets the resolution with this id or name; "BadValueError" names those that the camera has.
    void setMode(const QString& requested) const;

    /// Saves all settings to a file, which `pcdctl` and `pcdview` can load too. The file is
    /// replaced in one step; "ProfileError" if that fails, and it stays as it was.
    /// @internal See PDeviceProfileFile::save().
    void save(const QString& path) const;
    /// Applies a profile, and reports on each of its values. "ProfileError" if the file is no
    /// profile for this camera; nothing is sent then.
    /// @internal Returns the report as a dict.
    py::dict load(const QString& path) const;

private:
    /// Throws "UnpluggedError" or "RefusedError" if the camera does not report them.
    QList<PDeviceMode> readModes() const;

    std::shared_ptr<PPythonSession> m_session;
};
