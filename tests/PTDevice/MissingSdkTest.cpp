// SPDX-License-Identifier: MIT
// The built libPTDevice.so in a process without the camera SDK. The plugin searches for it once.
#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <QPluginLoader>

#include <gtest/gtest.h>

TEST(MissingSdk, is_logged_once_as_the_reason_why_there_are_no_cameras) {
    qputenv("TOUPCAM_LIBRARY", "no-such-library.so");
    const PLogCapture log;
    QPluginLoader loader(QStringLiteral(PT_PLUGIN_PATH));
    const std::unique_ptr<QObject> root(loader.instance()); // registers for hot-plug events
    ASSERT_NE(root, nullptr) << loader.errorString().toStdString();
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_TRUE(
        records[0].text().startsWith(u"No camera SDK, so no cameras: no-such-library.so"_qs))
        << records[0].text().toStdString();
    EXPECT_EQ(records[0].function, u"void *openLibrary()"_qs);
    EXPECT_EQ(records[0].level, PLogLevel::Error);
}
