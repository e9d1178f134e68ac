// SPDX-License-Identifier: MIT
#include <python/property/PPythonProfiles.h>

#include <python/host/PPythonError.h>
#include <python/host/PPythonSession.h>

#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

namespace {

py::dict toDict(const PDeviceMode& mode) {
    py::dict found;
    found["id"] = QString::fromLatin1(mode.id);
    found["name"] = mode.name;
    found["width"] = mode.width;
    found["height"] = mode.height;
    found["bit_depth"] = mode.bitDepth;
    return found;
}

py::list toIds(const QList<QByteArray>& ids) {
    py::list found;
    for (const QByteArray& id : ids)
        found.append(QString::fromUtf8(id));
    return found;
}

py::dict toReasons(const QList<PDeviceProfileReport::Item>& items) {
    py::dict found;
    for (const PDeviceProfileReport::Item& item : items)
        found[py::cast(QString::fromUtf8(item.id))] = item.reason;
    return found;
}

} // namespace

PPythonProfiles::PPythonProfiles(std::shared_ptr<PPythonSession> session)
    : m_session(std::move(session)) {
}

QList<PDeviceMode> PPythonProfiles::readModes() const {
    QList<PDeviceMode> modes;
    m_session->check(m_session->device().readModes(modes), "RefusedError");
    return modes;
}

py::list PPythonProfiles::modes() const {
    py::list found;
    for (const PDeviceMode& mode : readModes())
        found.append(toDict(mode));
    return found;
}

py::object PPythonProfiles::mode() const {
    const PDeviceMode mode = m_session->device().reportedMode();
    return mode.id.isEmpty() ? py::object(py::none()) : py::object(toDict(mode));
}

void PPythonProfiles::setMode(const QString& requested) const {
    QStringList known;
    for (const PDeviceMode& mode : readModes()) {
        if (QString::fromLatin1(mode.id) != requested && mode.name != requested) {
            known.append(u'"' + mode.name + u'"');
            continue;
        }
        const PUnlockedPython unlocked;
        return m_session->check(m_session->device().setMode(mode), "RefusedError");
    }
    const QString expected = u"one of %1"_qs.arg(known.join(u", "_qs));
    throw PPythonError("BadValueError",
                       u"\"mode\" cannot be \"%1\": expected %2"_qs.arg(requested, expected),
                       {{"property", u"mode"_qs}, {"value", requested}, {"expected", expected}});
}

void PPythonProfiles::save(const QString& path) const {
    const PUnlockedPython unlocked;
    PPythonError::check(PDeviceProfileFile::save(m_session->device(), path), "ProfileError");
}

py::dict PPythonProfiles::load(const QString& path) const {
    PDeviceProfileReport report;
    {
        const PUnlockedPython unlocked;
        PDeviceProfile profile;
        PPythonError::check(PDeviceProfileFile::read(path, profile), "ProfileError");
        PDeviceProfilePlan plan(m_session->device());
        PPythonError::check(plan.make(profile), "ProfileError");
        report = plan.apply();
    }
    py::dict found;
    found["applied"] = toIds(report.applied);
    found["refused"] = toReasons(report.refused);
    found["ignored"] = toReasons(report.ignored);
    found["missing"] = toIds(report.missing);
    found["note"] = report.note;
    return found;
}
