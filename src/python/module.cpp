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

#include <PCd/device/PDevice.h>

#include <exception>

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

py::list findCameras() {
    PPythonHost& host = PPythonHost::withCameras();
    host.handleEvents(); // cameras may have come and gone
    py::list found;
    for (const PDevice* device : host.manager().devices())
        found.append(toDict(host.cameras().identify(device)));
    return found;
}

void bindHost(py::module_& module) {
    module.def("load_sdk", [](const QString& choice) { PPythonHost::instance().loadSdk(choice); });
    module.def("sdk_path", [] { return PPythonHost::instance().cameras().sdk().path(); });
    module.def("is_simulated",
               [] { return PPythonHost::instance().cameras().sdk().isSimulated(); });
    module.def("has_cameras", [] { return PPythonHost::instance().hasCameras(); });
    module.def("find_cameras", [](const std::vector<QString>& paths) {
        PPythonHost::instance().findCameras(QStringList(paths.begin(), paths.end()));
    });
    module.def("notices", [] {
        const QStringList notices = PPythonHost::instance().takeNotices();
        return std::vector<QString>(notices.begin(), notices.end());
    });
    module.def("cameras", &findCameras);
    module.def("rescan", [] { PPythonHost::withCameras().rescan(); });
    module.def("handle_events", [] { PPythonHost::instance().handleEvents(); });
    module.def("wait_for", [](const py::object& predicate, std::optional<double> seconds) {
        std::optional<std::chrono::milliseconds> atMost;
        if (seconds)
            atMost = std::chrono::ceil<std::chrono::milliseconds>(
                std::chrono::duration<double>(*seconds));
        return PPythonHost::instance().waitFor(
            [&] {
                const int isTrue = PyObject_IsTrue(predicate().ptr());
                if (isTrue < 0) // as for an array of several elements
                    throw py::error_already_set();
                return isTrue == 1;
            },
            atMost);
    });
    module.def("set_listener", [](py::object listener) {
        PPythonHost::withCameras().setListener(std::move(listener));
    });
    module.def("write_unraisable", [](const py::object& error, const py::object& where) {
        PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
        PyErr_WriteUnraisable(where.ptr());
    });
    module.def("shut_down", &PPythonHost::shutDown);
}

void bindStream(py::module_& module) {
    using Stream = PPythonStream;
    py::class_<Stream>(module, "Stream")
        .def("next", &Stream::next)
        .def("poll",
             [](Stream& stream) {
                 std::optional<std::unique_ptr<PPythonFrame>> found = stream.poll();
                 return py::make_tuple(found.has_value(),
                                       found ? py::cast(std::move(*found)) : py::none());
             })
        .def("close", [](Stream& stream) { closeHere(stream); })
        .def("ledger", &Stream::ledger)
        .def_property_readonly("accepted", [](const Stream& s) { return s.counts().accepted; })
        .def_property_readonly("dropped", [](const Stream& s) { return s.counts().dropped; })
        .def_property_readonly("waiting", [](const Stream& s) { return s.counts().waiting; })
        .def_property_readonly("descriptor", &Stream::descriptor)
        .def_property_readonly("is_closed", &Stream::isClosed);
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
                std::optional<double> pixelSize, std::optional<double> timeout) {
    return PPythonCapture(session).record({path, frames, duration, interval, pixelSize, timeout});
}

void bindSession(py::module_& module) {
    using Session = PPythonSession;
    py::class_<Session, SessionPtr>(module, "Session")
        .def(py::init(&Session::open))
        .def("close", [](Session& session) { closeHere(session); })
        .def_property_readonly("is_open",
                               [](const Session& session) {
                                   PPythonHost::instance().handleEvents();
                                   return session.isOpen();
                               })
        .def_property_readonly("identity",
                               [](const Session& session) { return toDict(session.identity()); })
        .def("names",
             [](const SessionPtr& session) {
                 const QStringList names = PPythonProperties(session).names();
                 return std::vector<QString>(names.begin(), names.end());
             })
        .def("canonical_name",
             [](const SessionPtr& session, const QString& name) {
                 return PPythonProperties(session).canonicalName(name);
             })
        .def("describe",
             [](const SessionPtr& session, const QString& name) {
                 return PPythonProperties(session).description(name);
             })
        .def("get", [](const SessionPtr& session,
                       const QString& name) { return PPythonProperties(session).value(name); })
        .def("set",
             [](const SessionPtr& session, const QString& name, const py::object& value) {
                 PPythonProperties(session).setValue(name, value);
             })
        .def("run", [](const SessionPtr& session,
                       const QString& name) { PPythonProperties(session).run(name); })
        .def("modes", [](const SessionPtr& session) { return PPythonProfiles(session).modes(); })
        .def("mode", [](const SessionPtr& session) { return PPythonProfiles(session).mode(); })
        .def("set_mode", [](const SessionPtr& session,
                            const QString& mode) { PPythonProfiles(session).setMode(mode); })
        .def("save_profile", [](const SessionPtr& session,
                                const QString& path) { PPythonProfiles(session).save(path); })
        .def("load_profile",
             [](const SessionPtr& session, const QString& path) {
                 return PPythonProfiles(session).load(path);
             })
        .def("snap",
             [](const SessionPtr& session, std::optional<double> timeout) {
                 return PPythonCapture(session).snap(timeout);
             })
        .def("record", &record)
        .def("stream", &startStream)
        .def("trigger", &startTriggered);
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
        }
    });
    PPythonFrame::bind(module);
    bindStream(module);
    bindSession(module);
    bindHost(module);
}
