// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <apps/common/camera/PFrameExposure.h>

#include <PCd/frame/PDeviceFrame.h>

/// A frame as Python sees it: an object with the buffer protocol, over the memory of the image,
/// which it keeps. It needs neither the camera nor the host. Any thread that holds the
/// interpreter's lock.
class PPythonFrame {
public:
    /// `names` are those of the camera's settings, `index` the frame's place in its stream.
    PPythonFrame(PDeviceFrame frame, const PSettingNames& names, quint64 index);
    ~PPythonFrame();
    PPythonFrame(const PPythonFrame&) = delete;
    PPythonFrame& operator=(const PPythonFrame&) = delete;

    /// Adds the class to the module.
    static void bind(py::module_& module);

private:
    static void addBuffer(PyHeapTypeObject* type);
    static int getBuffer(PyObject* object, Py_buffer* view, int flags);
    static void releaseBuffer(PyObject* object, Py_buffer* view);
    py::object utc() const;
    py::dict settings() const;
    QString repr() const;

    PDeviceFrame m_frame;
    PFrameExposure m_exposure;
    quint64 m_index;
};
