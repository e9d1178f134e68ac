// SPDX-License-Identifier: MIT
#include <apps/common/camera/PCameraSdk.h>

#include <PCd/plugin/PPluginLoader.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

#include <vector>

namespace {

const char* const libraryVariable = "TOUPCAM_LIBRARY"; // where plugins look for the library
const char* const systemLibrary = "libtoupcam.so";
const char* const simulatorMark = "ToupcamSim_version"; // only a simulated SDK exports it
const char* const makersVersion = "Toupcam_Version";    // not every library has it
// Only the library that replays a trace exports these: what was recorded was simulated, or not.
const char* const replayMark = "ToupcamReplay_isSimulated";
const char* const replayVersion = "ToupcamReplay_version";

QString simulatorPath() {
    return QDir(PPluginLoader::homeFolder()).filePath(u"sim/libtoupcam.so"_qs);
}

/// The file that the loader used for a library name.
QString libraryFile(void* symbol) {
    Dl_info info{};
    return dladdr(symbol, &info) == 0 ? QString() : QFile::decodeName(info.dli_fname);
}

/// The text that a function without arguments returns; empty if there is no such function, or it
/// returns null.
QString readText(void* library, const char* function) {
    void* const symbol = dlsym(library, function);
    return symbol == nullptr ? QString()
                             : QString::fromUtf8(reinterpret_cast<const char* (*)()>(symbol)());
}

/// The folders in which the loader looks for libraries.
QStringList libraryFolders() {
    void* const program = dlopen(nullptr, RTLD_NOW);
    Dl_serinfo size{};
    if (program == nullptr || dlinfo(program, RTLD_DI_SERINFOSIZE, &size) != 0)
        return {};
    std::vector<Dl_serinfo> memory(size.dls_size / sizeof(Dl_serinfo) + 1);
    Dl_serinfo* const info = memory.data();
    if (dlinfo(program, RTLD_DI_SERINFOSIZE, info) != 0 ||
        dlinfo(program, RTLD_DI_SERINFO, info) != 0)
        return {};
    QStringList folders;
    for (unsigned i = 0; i < info->dls_cnt; ++i)
        folders.append(QFile::decodeName(info->dls_serpath[i].dls_name));
    return folders;
}

/// Why the loader cannot use a library that it passes over and then reports as absent: one that
/// cannot be read, or a link to nothing. Empty if there is none.
QString failureOfSkipped() {
    for (const QString& folder : libraryFolders()) {
        const QFileInfo file(QDir(folder).filePath(QLatin1String(systemLibrary)));
        if (!file.exists() && !file.isSymLink())
            continue;
        dlopen(QFile::encodeName(file.absoluteFilePath()).constData(), RTLD_NOW | RTLD_LOCAL);
        if (const char* const failure = dlerror())
            return QString::fromLocal8Bit(failure);
    }
    return {};
}

/// True if this is how the loader reports that no library has the system library's name. Compared
/// with its report of another name, because it is in the user's language.
bool isAbsence(const QString& failure) {
    const char* const nobodysLibrary = "libtoupcam.so.no-such-version";
    dlopen(nobodysLibrary, RTLD_NOW | RTLD_LOCAL);
    return QString::fromLocal8Bit(dlerror()).replace(QLatin1String(nobodysLibrary),
                                                     QLatin1String(systemLibrary)) == failure;
}

PStatus sdkFailure(const QString& asked, const QString& reason) {
    return PStatus::failure(u"cannot use \"%1\" as the camera SDK: %2"_qs.arg(asked, reason));
}

} // namespace

PStatus PCameraSdk::load(const QString& choice) {
    if (choice == u"auto"_qs)
        return loadAutomatic();
    if (choice == u"sim"_qs)
        return open(simulatorPath(), Origin::Simulator);
    return open(QFileInfo(choice).absoluteFilePath(), Origin::Path);
}

PStatus PCameraSdk::loadAutomatic() {
    const QString named = qEnvironmentVariable(libraryVariable);
    if (!named.isEmpty())
        return open(named, Origin::Environment);
    m_library = dlopen(systemLibrary, RTLD_NOW | RTLD_LOCAL);
    if (m_library != nullptr) {
        m_origin = Origin::System;
        return inspect(QString::fromLatin1(systemLibrary));
    }
    m_systemFailure = QString::fromLocal8Bit(dlerror());
    const QString reason = isAbsence(m_systemFailure) ? failureOfSkipped() : m_systemFailure;
    if (!reason.isEmpty())
        return sdkFailure(QString::fromLatin1(systemLibrary), reason);
    m_fallback = true;
    if (QFileInfo::exists(simulatorPath()))
        return open(simulatorPath(), Origin::Simulator);
    return PStatus::failure(
        u"this system has no camera SDK (%1), and the simulated one is not installed: \"%2\""_qs
            .arg(m_systemFailure, simulatorPath()));
}

PStatus PCameraSdk::open(const QString& path, Origin origin) {
    m_origin = origin;
    const QFileInfo file(path);
    // The loader would wait for a pipe for ever. It looks for names without a folder itself.
    if (path.contains(u'/') && file.exists() && !file.isFile())
        return sdkFailure(path, u"it is not a file"_qs);
    m_library = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (m_library == nullptr)
        return sdkFailure(path, QString::fromLocal8Bit(dlerror()));
    return inspect(path);
}

PStatus PCameraSdk::inspect(const QString& asked) {
    void* const enumerate = dlsym(m_library, "Toupcam_EnumV2");
    if (enumerate == nullptr)
        return sdkFailure(asked, u"it has no function Toupcam_EnumV2"_qs);
    m_path = libraryFile(enumerate);
    if (void* const isSimulated = dlsym(m_library, replayMark)) {
        m_simulated = reinterpret_cast<int (*)()>(isSimulated)() != 0;
        m_version = readText(m_library, replayVersion);
    } else {
        m_simulated = dlsym(m_library, simulatorMark) != nullptr;
        m_version = readText(m_library, m_simulated ? simulatorMark : makersVersion);
    }
    // The path, not the name: the plugin gets this very library, whatever it is called.
    qputenv(libraryVariable, QFile::encodeName(m_path));
    return PStatus::Ok;
}

QStringList PCameraSdk::findMissing(const QStringList& functions) const {
    QStringList missing;
    for (const QString& function : functions) {
        if (dlsym(m_library, function.toLatin1().constData()) == nullptr)
            missing.append(function);
    }
    return missing;
}

PStatus PCameraSdk::setPlugged(const QString& serial, bool plugged) const {
    using SetPlugged = int (*)(const char*, int);
    void* const found = m_library == nullptr ? nullptr : dlsym(m_library, "ToupcamSim_setPlugged");
    if (found == nullptr)
        return PStatus::failure(u"the camera SDK \"%1\" unplugs no camera"_qs.arg(m_path));
    if (reinterpret_cast<SetPlugged>(found)(serial.toLatin1().constData(), plugged ? 1 : 0) == 0) {
        return PStatus::failure(
            u"no simulated camera has the serial number \"%1\" and can be %2"_qs.arg(
                serial, plugged ? u"plugged in"_qs : u"unplugged"_qs));
    }
    return PStatus::Ok;
}

PStatus PCameraSdk::loadScene(const QString& file) {
    using LoadScene = const char* (*)(const char*);
    const auto load = reinterpret_cast<LoadScene>(dlsym(m_library, "ToupcamSim_loadSceneFile"));
    if (load == nullptr)
        return PStatus::failure(u"the simulated SDK \"%1\" takes no scene files"_qs.arg(m_path));
    if (const char* const complaint = load(QFile::encodeName(file).constData()))
        return PStatus::failure(u"scene \"%1\": %2"_qs.arg(file, QString::fromUtf8(complaint)));
    return PStatus::Ok;
}
