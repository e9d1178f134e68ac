// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PSdkExamination.h>

#include <QRegularExpression>
#include <QSysInfo>

#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString sdkTopic = u"sdk"_qs;
constexpr int mostNamesShown = 5;

QString originText(PCameraSdk::Origin origin) {
    switch (origin) {
    case PCameraSdk::Origin::Simulator:
        return u"comes with the program"_qs;
    case PCameraSdk::Origin::Environment:
        return u"named by TOUPCAM_LIBRARY"_qs;
    case PCameraSdk::Origin::System:
        return u"found by the system's loader"_qs;
    case PCameraSdk::Origin::Path:
        return u"named by --sdk"_qs;
    }
    return {};
}

QString versionText(const PCameraSdk& sdk) {
    return sdk.version().isEmpty() ? u"reports no version"_qs : u"version "_qs + sdk.version();
}

/// A file that the loader did not find: the library itself, or one that it needs.
QString adviseOnMissingFile(const QString& reason) {
    static const QRegularExpression form(
        u"\"([^\"]*)\" as the camera SDK: ([^:]+): cannot open shared object file"_qs);
    const QRegularExpressionMatch match = form.match(reason);
    if (reason.contains(u"Permission denied"))
        return u"Make the file readable for this user: chmod a+r FILE"_qs;
    if (match.hasMatch() && match.captured(1) != match.captured(2))
        return u"Install the package with %1, which the library needs."_qs.arg(match.captured(2));
    return u"Give the path of the maker's library with --sdk or TOUPCAM_LIBRARY."_qs;
}

} // namespace

PSdkExamination::PSdkExamination(const PCameraSdk& sdk, PStatus loaded, QStringList functions)
    : m_sdk(sdk)
    , m_loaded(std::move(loaded))
    , m_functions(std::move(functions)) {
}

QList<PFinding> PSdkExamination::run() const {
    if (!m_loaded.isOk()) {
        return {{Severity::Error, sdkTopic, u"the camera SDK"_qs, m_loaded.reason(),
                 adviseOnFailure(m_loaded.reason())}};
    }
    return {examineLibrary(), examineFunctions()};
}

PFinding PSdkExamination::examineLibrary() const {
    const QString library = u"%1, %2"_qs.arg(originText(m_sdk.origin()), versionText(m_sdk));
    if (m_sdk.isFallback()) {
        return {Severity::Warning, sdkTopic, m_sdk.path(),
                u"the cameras are simulated, because the system has no camera SDK (%1)"_qs.arg(
                    m_sdk.systemFailure()),
                u"Install the maker's libtoupcam.so, or give its path with --sdk or "
                "TOUPCAM_LIBRARY."_qs};
    }
    if (m_sdk.isSimulated())
        return {Severity::Note,
                sdkTopic,
                m_sdk.path(),
                u"%1; the cameras are simulated"_qs.arg(library),
                {}};
    return {Severity::Ok, sdkTopic, m_sdk.path(), library, {}};
}

PFinding PSdkExamination::examineFunctions() const {
    const QString topic = u"sdk-functions"_qs;
    const QStringList missing = m_sdk.findMissing(m_functions);
    if (missing.isEmpty()) {
        return {Severity::Ok,
                topic,
                m_sdk.path(),
                u"has all %1 functions that the plugin calls"_qs.arg(m_functions.size()),
                {}};
    }
    QString names = missing.mid(0, mostNamesShown).join(u", "_qs);
    if (missing.size() > mostNamesShown)
        names += u" and %1 more"_qs.arg(missing.size() - mostNamesShown);
    return {Severity::Warning, topic, m_sdk.path(),
            u"lacks %1 of the %2 functions that the plugin calls, so calls to them fail: %3"_qs.arg(
                QString::number(missing.size()), QString::number(m_functions.size()), names),
            u"Install the newest version of the maker's library."_qs};
}

QStringList PSdkExamination::pluginFunctions() {
    return QStringLiteral(PCD_SDK_FUNCTIONS).split(u' ');
}

QString PSdkExamination::adviseOnFailure(const QString& reason) {
    if (reason.contains(u"cannot open shared object file"))
        return adviseOnMissingFile(reason);
    if (reason.contains(u"wrong ELF class") || reason.contains(u"cannot open shared object: "))
        return u"Use the library built for this computer's processor, %1."_qs.arg(
            QSysInfo::currentCpuArchitecture());
    if (reason.contains(u"invalid ELF header") || reason.contains(u"file too short"))
        return u"Copy the library again: this file is not a library, or it is incomplete."_qs;
    if (reason.contains(u"' not found") || reason.contains(u"undefined symbol"))
        return u"Use a version of the library built for this system, or update the system."_qs;
    return u"Give the path of the maker's camera library with --sdk or TOUPCAM_LIBRARY."_qs;
}
