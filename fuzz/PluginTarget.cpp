// SPDX-License-Identifier: MIT
// The file of a plugin, up to the moment at which it would be loaded.
#include <FuzzSupport.h>

#include <PCd/plugin/PPluginMetadata.h>

#include <QDir>
#include <QPluginLoader>

#include <fcntl.h>
#include <unistd.h>

#include <iterator>

namespace {

/// What libFuzzer follows besides the code: Qt, which reads the file, was not built for it.
[[gnu::used, gnu::section("__libfuzzer_extra_counters")]] std::uint8_t reasonsSeen[256];

/// Writes the file that all runs use, without the cost of creating one.
QString writeFile(const QByteArray& bytes) {
    static const QString path = QDir(Fuzz::folder()).filePath(u"plugin.so"_qs);
    static const int file = ::open(path.toLocal8Bit().constData(), O_CREAT | O_RDWR, 0600);
    Fuzz::require(::ftruncate(file, 0) == 0 &&
                      ::pwrite(file, bytes.constData(), std::size_t(bytes.size()), 0) ==
                          bytes.size(),
                  "the file can be written");
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QPluginLoader loader(writeFile(Fuzz::toBytes(data, size)));
    PPluginMetadata metadata;
    const PStatus status = PPluginMetadata::read(loader, metadata);
    Fuzz::require(status.isOk() || !status.reason().isEmpty(), "a failure has a reason");
    reasonsSeen[qHash(status.reason()) % std::size(reasonsSeen)] = 1;
    return 0;
}
