// SPDX-License-Identifier: MIT
#include <python/frame/PPythonFrame.h>

#include <python/host/PPythonProcess.h>
#include <python/property/PPythonValue.h>

#include <apps/common/metadata/PPictureNotes.h>
#include <apps/common/picture/PPngEncoder.h>

#include <PCd/device/PDeviceRoles.h>

#include <QImage>

#include <array>

#include "docstrings.h"

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

constexpr int largestPreview = 1024; // pixels

char sampleFormat[] = "B"; // Py_buffer has it without const

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
    forbidNew(type);
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

double PPythonFrame::timestamp() const {
    return std::chrono::duration<double>(m_frame.stamp->arrived.time_since_epoch()).count();
}

py::object PPythonFrame::time() const {
    const py::module_ datetime = py::module_::import("datetime");
    const double since = double(m_frame.stamp->arrivedUtc.toMSecsSinceEpoch()) / 1000;
    return datetime.attr("datetime")
        .attr("fromtimestamp")(since, datetime.attr("timezone").attr("utc"));
}

py::dict PPythonFrame::settings() const {
    py::dict found;
    for (const auto& [id, value] : m_frame.stamp->settings->values)
        found[py::str(id.toStdString())] = PPythonValue::toPython(value, QVariant());
    return found;
}

py::object PPythonFrame::array(const py::object& frame) {
    return py::module_::import("numpy").attr("asarray")(frame);
}

py::bytes PPythonFrame::png() const {
    QByteArray file;
    {
        const PUnlockedPython unlocked; // for what may take long
        QImage picture = m_frame.image.toQImage();
        if (picture.width() > largestPreview || picture.height() > largestPreview)
            picture = picture.scaled(largestPreview, largestPreview, Qt::KeepAspectRatio,
                                     Qt::SmoothTransformation);
        file = PPngEncoder::encode(picture, PPictureNotes(), PPngEncoder::Content::Frame);
    }
    return py::bytes(file.constData(), std::size_t(file.size()));
}

QString PPythonFrame::repr() const {
    const QString exposure = m_exposure.timeText();
    return u"<pcd.Frame %1: %2 x %3%4>"_qs.arg(
        QString::number(m_frame.stamp->sequence), QString::number(m_frame.image.width()),
        QString::number(m_frame.image.height()),
        exposure.isEmpty() ? QString() : u", "_qs + exposure);
}

void PPythonFrame::bind(py::module_& module) {
    using Frame = PPythonFrame;
    py::class_<Frame>(module, "Frame", PText::PPythonFrame::ofClass,
                      py::custom_type_setup(&PPythonFrame::addBuffer))
        .def_property_readonly("sequence", &Frame::sequence, PText::PPythonFrame::sequence)
        .def_property_readonly("index", &Frame::index, PText::PPythonFrame::index)
        .def_property_readonly("still", &Frame::still, PText::PPythonFrame::still)
        .def_property_readonly("timestamp", &Frame::timestamp, PText::PPythonFrame::timestamp)
        .def_property_readonly("time", &Frame::time, PText::PPythonFrame::time)
        .def_property_readonly("exposure", &Frame::exposure, PText::PPythonFrame::exposure)
        .def_property_readonly("gain", &Frame::gain, PText::PPythonFrame::gain)
        .def_property_readonly("automatic", &Frame::automatic, PText::PPythonFrame::automatic)
        .def_property_readonly("binning", &Frame::binning, PText::PPythonFrame::binning)
        .def_property_readonly("settings", &Frame::settings, PText::PPythonFrame::settings)
        .def_property_readonly("width", &Frame::width, PText::PPythonFrame::width)
        .def_property_readonly("height", &Frame::height, PText::PPythonFrame::height)
        .def_property_readonly("array", &Frame::array, PText::PPythonFrame::array)
        .def("_repr_png_", &Frame::png, PText::PPythonFrame::png)
        .def("__repr__", &Frame::repr);
}
