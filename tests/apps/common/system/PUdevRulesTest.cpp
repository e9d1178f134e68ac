// SPDX-License-Identifier: MIT
#include <apps/common/system/PUdevRules.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

namespace {

constexpr PUsbId firstId{0x1234, 0x00ab};
constexpr PUsbId secondId{0x1234, 0x0002};

const QByteArray ruleOfOne = R"(SUBSYSTEM=="usb", ATTR{idVendor}=="1234", ATTR{idProduct}=="00ab")";

class PUdevRulesTest : public FolderTest {
protected:
    QString findOne() const { return PUdevRules::findFile(PSystemTree(path(QString())), firstId); }

    MadeSystem made{path(QString())};
};

TEST_F(PUdevRulesTest, lines_with_ids_are_repeated_for_each_product) {
    EXPECT_EQ(PUdevRules::makeFile("# Head\nv=@VENDOR@ p=@PRODUCT@ x\nend\n", {firstId, secondId}),
              "# Head\nv=1234 p=00ab x\nv=1234 p=0002 x\nend\n");
}

TEST_F(PUdevRulesTest, a_rule_that_was_made_is_found) {
    made.write(u"etc/udev/rules.d/70-made-up.rules"_qs,
               PUdevRules::makeFile(readFile(QStringLiteral(UDEV_TEMPLATE)), {secondId, firstId}));
    EXPECT_EQ(findOne(), path(u"etc/udev/rules.d/70-made-up.rules"_qs));
}

TEST_F(PUdevRulesTest, rules_of_packages_are_found_too) {
    made.write(u"usr/lib/udev/rules.d/60-a.rules"_qs, "# nothing\n");
    made.write(u"usr/lib/udev/rules.d/60-b.rules"_qs, ruleOfOne);
    EXPECT_EQ(findOne(), path(u"usr/lib/udev/rules.d/60-b.rules"_qs));
}

TEST_F(PUdevRulesTest, comments_other_products_and_other_files_are_no_rules) {
    made.write(u"etc/udev/rules.d/1.rules"_qs, " # " + ruleOfOne);
    made.write(u"etc/udev/rules.d/2.rules"_qs, QByteArray(ruleOfOne).replace("00ab", "00ac"));
    made.write(u"etc/udev/rules.d/3.rules"_qs, QByteArray(ruleOfOne).replace("1234", "1235"));
    made.write(u"etc/udev/rules.d/4.rules.bak"_qs, ruleOfOne);
    EXPECT_EQ(findOne(), QString());
}

} // namespace
