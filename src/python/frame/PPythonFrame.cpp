// SPDX-License-Identifier: MIT
#include <python/frame/PPythonFrame.h>

#include <python/host/PPythonProcess.h>
#include <python/property/PPythonValue.h>

#include <PCd/device/PDeviceRoles.h>

#include <array>

namespace {

/// How the pixels of an image lie in memory when they are read as red, green, blue.
struct Layout {
    std::ptrdiff_t first = 0;  ///< byte of the first sample of a pixel
    Py_ssize_t samples = 1;    ///< of a pixel, as shown
    Py_ssize_t sampleStep = 1; ///< bytes
};

Layout toLayout(PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        break;
    case PDIP::ColorFormat::Bgr:
    case PDIP::ColorFormat::BgrX:
        return {2, 3, -1}; // backwards: red is the last in memory
    case PDIP::ColorFormat::Xrgb:
        return {0, 3, 1};
    }
    return {};
}

/// What a view of a frame points to, as long as it exists.
struct Shape {
    std::array<Py_ssize_t, 3> lengths{};
    std::array<Py_ssize_t, 3> strides{};
};

char sampleFormat[] = "B"; // Py_buffer has it without const

double seconds(std::chrono::steady_clock::time_point time) {
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

} // namespace

PPythonFrame::PPythonFrame(PDeviceFrame frame, const PSettingNames& names, quint64 index)
    : m_frame(std::move(frame))
    , m_exposure(PFrameExposure::of(*m_frame.stamp->settings, names))
    , m_index(index) {
}

PPythonFrame::~PPythonFrame() {
    // In a forked process the lock of the memory's pool may be held for ever, by a thread that only
    // the first process has.
    if (PPythonProcess::isForked())
        new PDeviceFrame(std::move(m_frame));
}

void PPythonFrame::addBuffer(PyHeapTypeObject* type) {
    type->ht_type.tp_as_buffer = &type->as_buffer;
    type->as_buffer.bf_getbuffer = &PPythonFrame::getBuffer;
    type->as_buffer.bf_releasebuffer = &PPythonFrame::releaseBuffer;
}

/// pybind11's own buffers cannot refuse a reader that takes no strides, and it would read beyond
/// the pixels.
int PPythonFrame::getBuffer(PyObject* object, Py_buffer* view, int flags) {
    const PImage& image = py::handle(object).cast<PPythonFrame&>().m_frame.image;
    const Layout layout = toLayout(image.format());
    const auto width = Py_ssize_t(image.width());
    const auto rowStride = Py_ssize_t(image.bytesPerLine());
    const bool isPlain = layout.samples == 1 && rowStride == width;
    view->obj = nullptr;
    if ((flags & PyBUF_WRITABLE) != 0) {
        PyErr_SetString(PyExc_BufferError, "a frame is read-only: copy it with numpy.array(frame)");
        return -1;
    }
    if ((flags & PyBUF_STRIDES) != PyBUF_STRIDES && !isPlain) {
        PyErr_SetString(PyExc_BufferError,
                        "the rows or colours of this frame are not in one piece: copy it with "
                        "numpy.ascontiguousarray(frame)");
        return -1;
    }
    auto* const shape =
        new Shape{{Py_ssize_t(image.height()), width, layout.samples},
                  {rowStride, Py_ssize_t(image.header().bytesPerPixel()), layout.sampleStep}};
    // Py_buffer has no const; it is marked as read-only.
    view->buf = const_cast<unsigned char*>(image.rawData(PDIP::AccessMode::Read).constData()) +
                layout.first;
    view->obj = py::handle(object).inc_ref().ptr();
    view->len = shape->lengths[0] * width * layout.samples;
    view->readonly = 1;
    view->itemsize = 1;
    view->format = (flags & PyBUF_FORMAT) != 0 ? sampleFormat : nullptr;
    view->ndim = layout.samples == 1 ? 2 : 3;
    view->shape = (flags & PyBUF_ND) != 0 ? shape->lengths.data() : nullptr;
    view->strides = (flags & PyBUF_STRIDES) == PyBUF_STRIDES ? shape->strides.data() : nullptr;
    view->suboffsets = nullptr;
    view->internal = shape;
    return 0;
}

void PPythonFrame::releaseBuffer(PyObject*, Py_buffer* view) {
    delete static_cast<Shape*>(view->internal);
}

py::object PPythonFrame::utc() const {
    const py::module_ datetime = py::module_::import("datetime");
    const double time = double(m_frame.stamp->arrivedUtc.toMSecsSinceEpoch()) / 1000;
    return datetime.attr("datetime")
        .attr("fromtimestamp")(time, datetime.attr("timezone").attr("utc"));
}

py::dict PPythonFrame::settings() const {
    py::dict found;
    for (const auto& [id, value] : m_frame.stamp->settings->values)
        found[py::str(id.toStdString())] = PPythonValue::toPython(value, QVariant());
    return found;
}

QString PPythonFrame::repr() const {
    const QString exposure = m_exposure.timeText();
    return u"<pcd.Frame %1: %2 x %3%4>"_qs.arg(
        QString::number(m_frame.stamp->sequence), QString::number(m_frame.image.width()),
        QString::number(m_frame.image.height()),
        exposure.isEmpty() ? QString() : u", "_qs + exposure);
}

namespace {

constexpr char frameText[] =
    R"(One picture of a camera, over the memory in which it arrived.

`numpy.asarray(frame)`, or `frame.array`, is the pixels without a copy: rows, columns, and for a
colour camera red, green and blue; 8 bits each. The memory is read-only and stays as long as the
frame or an array of it exists, also when the camera is closed. Any thread may use a frame.)";

} // namespace

void PPythonFrame::bind(py::module_& module) {
    using Frame = PPythonFrame;
    py::class_<Frame>(module, "Frame", frameText, py::custom_type_setup(&PPythonFrame::addBuffer))
        .def_property_readonly(
            "sequence", [](const Frame& f) { return f.m_frame.stamp->sequence; },
            "Number among the frames of the camera since it was plugged in, from 1. A gap is "
            "frames "
            "that the stream has dropped.")
        .def_property_readonly(
            "index", [](const Frame& f) { return f.m_index; },
            "Place among the frames that its stream has returned, from 0.")
        .def_property_readonly(
            "still", [](const Frame& f) { return f.m_frame.stamp->still; },
            "True for a still, which is numbered apart from live frames.")
        .def_property_readonly(
            "timestamp", [](const Frame& f) { return seconds(f.m_frame.stamp->arrived); },
            "When it arrived, in seconds of time.monotonic(): for intervals.")
        .def_property_readonly("time", &Frame::utc, "When it arrived, as a datetime in UTC.")
        .def_property_readonly(
            "exposure", [](const Frame& f) { return f.m_exposure.milliseconds; },
            "Exposure time in milliseconds; None if it is not known.")
        .def_property_readonly(
            "gain", [](const Frame& f) { return f.m_exposure.gain; },
            "Gain as a factor; None if it is not known.")
        .def_property_readonly(
            "automatic", [](const Frame& f) { return f.m_exposure.automatic; },
            "True if the camera chose exposure time and gain.")
        .def_property_readonly(
            "binning", [](const Frame& f) { return f.m_exposure.binning; },
            "\"2x2\" and so on; empty if it is not known.")
        .def_property_readonly("settings", &Frame::settings,
                               "All settings of the camera when it arrived, by id.")
        .def_property_readonly(
            "width", [](const Frame& f) { return f.m_frame.image.width(); }, "Pixels.")
        .def_property_readonly(
            "height", [](const Frame& f) { return f.m_frame.image.height(); }, "Pixels.")
        .def_property_readonly(
            "array",
            [](const py::object& frame) {
                return py::module_::import("numpy").attr("asarray")(frame);
            },
            "The pixels as a read-only NumPy array, without a copy.")
        .def("__repr__", &Frame::repr);
}
