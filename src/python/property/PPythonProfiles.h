// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <memory>

class PPythonSession;

/// The modes of an open camera, and its settings as files. Throws PPythonError. The thread of
/// PPythonHost, with the interpreter's lock.
class PPythonProfiles {
public:
    explicit PPythonProfiles(std::shared_ptr<PPythonSession> session);

    /// The modes, each as a dict; the present one, which is None if the camera has none.
    py::list modes() const;
    py::object mode() const;
    /// Sets the mode with this id or name; "BadValueError" names those that the camera has.
    void setMode(const QString& requested) const;

    /// Saves the settings, see PDeviceProfileFile::save(). "ProfileError" if that fails.
    void save(const QString& path) const;
    /// Applies a file, and returns the report on it as a dict. "ProfileError" if the file is no
    /// profile for this camera; nothing is sent then.
    py::dict load(const QString& path) const;

private:
    std::shared_ptr<PPythonSession> m_session;
};
