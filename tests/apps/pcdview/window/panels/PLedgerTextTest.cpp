// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PLedgerText.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

PFrameLedger makeLedger(quint64 delivered, quint64 lostInCamera, quint64 notWanted) {
    PFrameLedger ledger;
    ledger.produced = delivered + lostInCamera + notWanted;
    ledger.outcomes[std::size_t(PFrameOutcome::Delivered)] = delivered;
    ledger.outcomes[std::size_t(PFrameOutcome::LostInCamera)] = lostInCamera;
    ledger.outcomes[std::size_t(PFrameOutcome::NotRequested)] = notWanted;
    return ledger;
}

} // namespace

TEST(PLedgerTextTest, says_that_none_was_lost) {
    EXPECT_EQ(PLedgerText::summary(makeLedger(1203, 0, 0)), u"Frames: 1203, none lost"_qs);
}

TEST(PLedgerTextTest, says_where_frames_were_lost) {
    PFrameLedger ledger = makeLedger(100, 2, 0);
    ledger.outcomes[std::size_t(PFrameOutcome::DroppedWaiting)] = 5;
    ledger.produced += 5;
    EXPECT_EQ(PLedgerText::brief(ledger), u"Frames: 107, lost: 7"_qs);
    EXPECT_EQ(PLedgerText::summary(ledger),
              u"Frames: 107, lost: 7 (in the camera or on the cable: 2, "
              "program too slow: 5)"_qs);
}

TEST(PLedgerTextTest, frames_that_were_not_requested_are_not_lost) {
    EXPECT_EQ(PLedgerText::lost(makeLedger(10, 0, 4)), 0u);
}

TEST(PLedgerTextTest, rows_account_for_every_frame) {
    PFrameLedger ledger = makeLedger(100, 2, 4);
    ledger.produced += 3;
    ledger.waiting = 3;
    ledger.snapshots = 50; // including live frames that were forwarded
    const auto rows = PLedgerText::rows(ledger, 7);
    ASSERT_EQ(rows.size(), 6);
    EXPECT_EQ(rows[5].second, 7u);
    EXPECT_EQ(rows[0].second, rows[1].second + rows[2].second + rows[3].second + rows[4].second);
}
