// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <apps/common/camera/PFrameExposure.h>

#include <PCd/frame/PDeviceFrame.h>

/// One picture of a camera, over the memory in which it arrived.
///
/// `numpy.asarray(frame)`, or `frame.array`, is the pixels without a copy: rows, columns, and for a
/// colour camera red, green and blue; 8 bits each. The memory is read-only and stays as long as the
/// frame or an array of it exists, also when the camera is closed. Any thread may use a frame.
/// @internal An object with the buffer protocol, which needs neither the camera nor the host. Any
/// thread that holds the interpreter's lock.
class PPythonFrame {
public:
    /// `names` are those of the camera's settings, `index` the frame's place in its stream.
    PPythonFrame(PDeviceFrame frame, const PSettingNames& names, quint64 index);
    ~PPythonFrame();
    PPythonFrame(const PPythonFrame&) = delete;
    PPythonFrame& operator=(const PPythonFrame&) = delete;

    /// Adds the class to the module.
    static void bind(py::module_& module);

    /// Number among the frames of the camera since it was plugged in, from 1. A gap is frames that
    /// the stream has dropped.
    quint64 sequence() const { return m_frame.stamp->sequence; }
    /// Place among the frames that its stream has returned, from 0.
    quint64 index() const { return m_index; }
    /// True for a still, which is numbered apart from live frames.
    bool still() const { return m_frame.stamp->still; }
    /// When it arrived, in seconds of time.monotonic(): for intervals.
    double timestamp() const;
    /// When it arrived, as a datetime in UTC.
    py::object time() const;
    /// Exposure time in milliseconds; None if it is not known.
    std::optional<double> exposure() const { return m_exposure.milliseconds; }
    /// Gain as a factor; None if it is not known.
    std::optional<double> gain() const { return m_exposure.gain; }
    /// True if the camera chose exposure time and gain.
    bool automatic() const { return m_exposure.automatic; }
    /// "2x2" and so on; empty if it is not known.
    QString binning() const { return m_exposure.binning; }
    /// All settings of the camera when it arrived, by id.
    py::dict settings() const;
    /// Pixels of a row.
    long width() const { return m_frame.image.width(); }
    /// Rows.
    long height() const { return m_frame.image.height(); }
    /// The pixels as a read-only NumPy array, without a copy.
    static py::object array(const py::object& frame);
    /// The picture as a notebook shows it: the bytes of a PNG file, at most 1024 pixels wide and
    /// high.
    py::bytes png() const;

private:
    static void addBuffer(PyHeapTypeObject* type);
    static int getBuffer(PyObject* object, Py_buffer* view, int flags);
    static void releaseBuffer(PyObject* object, Py_buffer* view);
    QString repr() const;

    PDeviceFrame m_frame;
    PFrameExposure m_exposure;
    quint64 m_index;
};
