// SPDX-License-Identifier: MIT
// `pcdctl check` on cameras that obey every rule.
#include <apps/pcdctl/CtlProcess.h>

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

TEST(CheckCameras, has_a_thousand_cases_for_the_built_in_camera_and_none_fails) {
    const CtlResult result = runCtl({u"check"_qs, u"--sdk=sim"_qs, jsonWord, u"--allow=heat"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.output.toStdString() << result.errors.toStdString();
    EXPECT_EQ(result.json[u"totals"][u"failedCases"].toInt(-1), 0);
    EXPECT_GE(result.json[u"totals"][u"cases"].toInt(), 1000);
}

} // namespace
