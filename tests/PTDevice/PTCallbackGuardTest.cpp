// SPDX-License-Identifier: MIT
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTCallbackGuard.h>

#include <support/QtPrinters.h>

#include <stdexcept>

namespace {

class CallbackGuard : public SimFixture {};

} // namespace

TEST_F(CallbackGuard, catches_an_exception_and_logs_it) {
    EXPECT_FALSE(PTCallbackGuard::run("callback", [] { throw std::runtime_error("no room"); }));
    EXPECT_EQ(ptLastText(log), u"Exception: no room"_qs);
}

TEST_F(CallbackGuard, catches_what_is_not_an_exception_class) {
    EXPECT_FALSE(PTCallbackGuard::run("callback", [] { throw 1; }));
    EXPECT_EQ(ptLastText(log), u"Exception: of an unknown type"_qs);
}

TEST_F(CallbackGuard, leaves_a_body_alone_that_throws_nothing) {
    EXPECT_TRUE(PTCallbackGuard::run("callback", [] {}));
    EXPECT_TRUE(ptTexts(log).isEmpty());
}
