// SPDX-License-Identifier: MIT
// What Python's part of the module calls. The texts for users are in python/pcd.
#include <python/host/PPybind.h>

#include <python/frame/PPythonCapture.h>
#include <python/frame/PPythonStream.h>
#include <python/host/PPythonError.h>
#include <python/host/PPythonHost.h>
#include <python/host/PPythonProcess.h>
#include <python/host/PPythonSession.h>
#include <python/property/PPythonProfiles.h>
#include <python/property/PPythonProperties.h>

#include <apps/common/camera/PCameraSdk.h>
#include <apps/common/program/PExceptionText.h>
#include <apps/common/record/PRecordTally.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PDeviceMode.h>
#include <PCd/profile/PDeviceProfileReport.h>

#include <exception>
#include <system_error>

#include "docstrings.h"

namespace {

using SessionPtr = std::shared_ptr<PPythonSession>;

/// Closes a session or a stream. In a forked process there is nothing to close.
template <typename Opened>
void closeHere(Opened& opened) {
    if (!PPythonHost::isOwnThread() && !PPythonProcess::isForked())
        PPythonHost::instance(); // throws
    opened.close();
}

py::dict toDict(const PCameraIdentity& identity) {
    py::dict found;
    found["id"] = identity.id;
    found["model"] = identity.model;
    found["serial"] = identity.serial;
    found["simulated"] = identity.simulated;
    return found;
}

py::list presentCameras() {
    py::list found;
    for (const PCameraIdentity& identity : PPythonHost::withCameras().present())
        found.append(toDict(identity));
    return found;
}

bool waitFor(const py::object& predicate, std::optional<double> seconds) {
    std::optional<std::chrono::milliseconds> atMost;
    if (seconds)
        atMost =
            std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(*seconds));
    return PPythonHost::instance().waitFor(
        [&] {
            const int isTrue = PyObject_IsTrue(predicate().ptr());
            if (isTrue < 0) // as for an array of several elements
                throw py::error_already_set();
            return isTrue == 1;
        },
        atMost);
}

/// Another interpreter of the process would share classes, and the state of threads, with the main
/// one. Python gives it this module without initialising it again.
void checkInterpreter() {
    if (PyInterpreterState_Get() != PyInterpreterState_Main())
        throw py::import_error("pcd works in the main interpreter only: use processes instead");
}

void bindSetup(py::module_& module) {
    module.def("check_interpreter", &checkInterpreter,
               "Raises ImportError in all interpreters but the main one.");
    module.def(
        "load_sdk", [](const QString& choice) { PPythonHost::instance().loadSdk(choice); },
        PText::PPythonHost::loadSdk);
    module.def(
        "sdk_path", [] { return PPythonHost::instance().cameras().sdk().path(); },
        PText::PCameraSdk::path);
    module.def(
        "has_cameras", [] { return PPythonHost::instance().hasCameras(); },
        PText::PPythonHost::hasCameras);
    module.def(
        "find_cameras",
        [](const std::vector<QString>& paths) {
            PPythonHost::instance().findCameras(QStringList(paths.begin(), paths.end()));
        },
        PText::PPythonHost::findCameras);
    module.def(
        "notices",
        [] {
            const QStringList notices = PPythonHost::instance().takeNotices();
            return std::vector<QString>(notices.begin(), notices.end());
        },
        PText::PPythonHost::takeNotices);
    module.def("shut_down", &PPythonHost::shutDown, PText::PPythonHost::shutDown);
}

void bindHost(py::module_& module) {
    module.def("cameras", &presentCameras, PText::PPythonHost::present);
    module.def(
        "rescan", [] { PPythonHost::withCameras().rescan(); },
        PText::PDeviceManager::updateDevices);
    module.def(
        "handle_events", [] { PPythonHost::instance().handleEvents(); },
        PText::PPythonHost::handleEvents);
    module.def("wait_for", &waitFor, PText::PPythonHost::waitFor);
    module.def(
        "set_listener",
        [](py::object listener) { PPythonHost::withCameras().setListener(std::move(listener)); },
        PText::PPythonHost::setListener);
    module.def(
        "write_unraisable",
        [](const py::object& error, const py::object& where) {
            PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
            PyErr_WriteUnraisable(where.ptr());
        },
        "Gives an exception that has no caller to sys.unraisablehook.");
}

/// Those of the classes that Python makes itself from what the functions return.
void bindTexts(py::module_& module) {
    py::dict texts;
    texts["CameraInfo"] = PText::PCameraIdentity::ofClass;
    texts["Mode"] = PText::PDeviceMode::ofClass;
    texts["ProfileReport"] = PText::PDeviceProfileReport::ofClass;
    texts["Recording"] = PText::PRecordTally::ofClass;
    module.attr("texts") = texts;
}

void bindStream(py::module_& module) {
    using Stream = PPythonStream;
    py::class_<Stream>(module, "Stream", PText::PPythonStream::ofClass,
                       py::custom_type_setup(&forbidNew))
        .def("next", &Stream::next, PText::PPythonStream::next)
        .def(
            "poll",
            [](Stream& stream) {
                std::optional<std::unique_ptr<PPythonFrame>> found = stream.poll();
                return py::make_tuple(found.has_value(),
                                      found ? py::cast(std::move(*found)) : py::none());
            },
            PText::PPythonStream::poll)
        .def(
            "close", [](Stream& stream) { closeHere(stream); }, PText::PPythonStream::close)
        .def("ledger", &Stream::ledger, PText::PPythonStream::ledger)
        .def_property_readonly(
            "accepted", [](const Stream& s) { return s.counts().accepted; },
            PText::PFrameQueue::Counts::accepted)
        .def_property_readonly(
            "dropped", [](const Stream& s) { return s.counts().dropped; },
            PText::PFrameQueue::Counts::dropped)
        .def_property_readonly(
            "waiting", [](const Stream& s) { return s.counts().waiting; },
            PText::PFrameQueue::Counts::waiting)
        .def_property_readonly("descriptor", &Stream::descriptor, PText::PFrameQueue::descriptor)
        .def_property_readonly("is_closed", &Stream::isClosed, PText::PPythonStream::isClosed);
}

std::unique_ptr<PPythonStream> startStream(const SessionPtr& session, std::optional<quint64> frames,
                                           std::size_t queue, std::optional<double> timeout) {
    return std::make_unique<PPythonStream>(
        session, PPythonStream::Plan{frames, queue, timeout, std::nullopt});
}

/// The exposure time is in milliseconds.
std::unique_ptr<PPythonStream> startTriggered(const SessionPtr& session,
                                              std::optional<quint64> frames, std::size_t queue,
                                              std::optional<double> timeout, bool external,
                                              std::optional<double> exposure) {
    PPythonTrigger::Plan trigger{external, std::nullopt};
    if (exposure)
        trigger.exposure = std::chrono::round<std::chrono::microseconds>(
            std::chrono::duration<double, std::milli>(*exposure));
    return std::make_unique<PPythonStream>(session,
                                           PPythonStream::Plan{frames, queue, timeout, trigger});
}

py::dict record(const SessionPtr& session, const QString& path, std::optional<quint64> frames,
                std::optional<double> duration, std::optional<double> interval,
                std::optional<double> pixelSize, std::optional<double> timeout, bool pyramid) {
    return PPythonCapture(session).record(
        {path, frames, duration, interval, pixelSize, timeout, pyramid});
}

using SessionClass = py::class_<PPythonSession, SessionPtr>;

SessionClass bindSession(py::module_& module) {
    using Session = PPythonSession;
    SessionClass session(module, "Session", PText::PPythonSession::ofClass,
                         py::custom_type_setup(&forbidNew));
    module.def("open", &Session::open, PText::PPythonSession::open);
    session
        .def(
            "close", [](Session& opened) { closeHere(opened); }, PText::PPythonSession::close)
        .def_property_readonly(
            "is_open",
            [](const Session& opened) {
                PPythonHost::instance().handleEvents();
                return opened.isOpen();
            },
            PText::PPythonSession::isOpen)
        .def_property_readonly(
            "identity", [](const Session& opened) { return toDict(opened.identity()); },
            PText::PPythonSession::identity);
    return session;
}

void bindProperties(SessionClass& session) {
    using Properties = PPythonProperties;
    session
        .def(
            "names",
            [](const SessionPtr& opened) {
                const QStringList names = Properties(opened).names();
                return std::vector<QString>(names.begin(), names.end());
            },
            PText::PPythonProperties::names)
        .def(
            "canonical_name",
            [](const SessionPtr& opened, const QString& name) {
                return Properties(opened).canonicalName(name);
            },
            PText::PPythonProperties::canonicalName)
        .def(
            "describe",
            [](const SessionPtr& opened, const QString& name) {
                return Properties(opened).description(name);
            },
            PText::PPythonProperties::description)
        .def(
            "get",
            [](const SessionPtr& opened, const QString& name) {
                return Properties(opened).value(name);
            },
            PText::PPythonProperties::value)
        .def(
            "set",
            [](const SessionPtr& opened, const QString& name, const py::object& value) {
                Properties(opened).setValue(name, value);
            },
            PText::PPythonProperties::setValue)
        .def(
            "run",
            [](const SessionPtr& opened, const QString& name) { Properties(opened).run(name); },
            PText::PPythonProperties::run);
}

void bindProfiles(SessionClass& session) {
    using Profiles = PPythonProfiles;
    session
        .def(
            "modes", [](const SessionPtr& opened) { return Profiles(opened).modes(); },
            PText::PPythonProfiles::modes)
        .def(
            "mode", [](const SessionPtr& opened) { return Profiles(opened).mode(); },
            PText::PPythonProfiles::mode)
        .def(
            "set_mode",
            [](const SessionPtr& opened, const QString& mode) { Profiles(opened).setMode(mode); },
            PText::PPythonProfiles::setMode)
        .def(
            "save_profile",
            [](const SessionPtr& opened, const QString& path) { Profiles(opened).save(path); },
            PText::PPythonProfiles::save)
        .def(
            "load_profile",
            [](const SessionPtr& opened, const QString& path) {
                return Profiles(opened).load(path);
            },
            PText::PPythonProfiles::load);
}

void bindFrames(SessionClass& session) {
    session
        .def(
            "snap",
            [](const SessionPtr& opened, std::optional<double> timeout) {
                return PPythonCapture(opened).snap(timeout);
            },
            PText::PPythonCapture::snap)
        .def("record", &record, PText::PPythonCapture::record)
        .def("stream", &startStream, PText::PPythonStream::PPythonStream)
        .def("trigger", &startTriggered, PText::PPythonTrigger::PPythonTrigger);
}

} // namespace

PYBIND11_MODULE(_pcd, module) {
    PPythonProcess::note();
    py::register_exception_translator([](std::exception_ptr pointer) {
        try {
            if (pointer)
                std::rethrow_exception(pointer);
        } catch (const PPythonError& error) {
            error.setCurrent();
        } catch (const std::system_error& error) { // pybind11's would not say what has failed
            PPythonError("Error", PExceptionText::of(error)).setCurrent();
        }
    });
    py::options options;
    options.disable_function_signatures(); // the .pyi file has them
    PPythonFrame::bind(module);
    bindStream(module);
    SessionClass session = bindSession(module);
    bindProperties(session);
    bindProfiles(session);
    bindFrames(session);
    bindSetup(module);
    bindHost(module);
    bindTexts(module);
}
