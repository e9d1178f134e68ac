// SPDX-License-Identifier: MIT
// The built libPTDevice.so in a process whose camera SDK lacks some functions.
#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <QPluginLoader>

#include <gtest/gtest.h>

TEST(IncompleteSdk, is_logged_with_the_function_that_it_lacks) {
    qputenv("TOUPCAM_LIBRARY", SDK_WITHOUT_FUNCTIONS);
    const PLogCapture log;
    QPluginLoader loader(QStringLiteral(PT_PLUGIN_PATH));
    const std::unique_ptr<QObject> root(loader.instance()); // registers for hot-plug events
    ASSERT_NE(root, nullptr) << loader.errorString().toStdString();
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].text(), u"The camera SDK lacks Toupcam_HotPlug"_qs);
    EXPECT_EQ(records[0].function, u"void *findFunction(const char *)"_qs);
    EXPECT_EQ(records[0].level, PLogLevel::Warning);
}
