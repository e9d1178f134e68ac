// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimEventThread.h>
#include <toupcam/sim/stream/PSimThreadMark.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <vector>

namespace {

using ::testing::ElementsAre;

// The client: records the codes, and can be blocked inside its callback.
struct Client {
    static void onEvent(unsigned code, void* context) {
        auto* const client = static_cast<Client*>(context);
        client->codes.push_back(code);
        client->onStreamThread = PSimThreadMark::isOf(client);
        if (code == hold) {
            client->entered.set_value();
            client->release.get_future().wait();
        }
    }

    static constexpr unsigned hold = 99;
    std::vector<unsigned> codes; // read after join()
    bool onStreamThread = false;
    std::promise<void> entered;
    std::promise<void> release;
};

class PSimEventThreadTest : public ::testing::Test {
protected:
    // Starts the thread, which then stays in the callback until release().
    void startAndHold() {
        m_thread->start(&m_client);
        m_thread->post(Client::hold);
        m_client.entered.get_future().wait();
    }
    void release() { m_client.release.set_value(); }
    void waitForAll() {
        std::promise<void> done;
        m_thread->post(0, [&done] { done.set_value(); });
        done.get_future().wait();
        m_thread->requestStop();
        m_thread->join();
    }

    Client m_client;
    std::shared_ptr<PSimEventThread> m_thread =
        std::make_shared<PSimEventThread>(Client::onEvent, &m_client);
};

TEST_F(PSimEventThreadTest, codes_are_reported_in_order_on_a_thread_marked_as_the_owners) {
    m_thread->start(&m_client);
    m_thread->post(1);
    m_thread->post(1);
    m_thread->post(2);
    waitForAll();
    EXPECT_THAT(m_client.codes, ElementsAre(1U, 1U, 2U, 0U));
    EXPECT_TRUE(m_client.onStreamThread);
    EXPECT_FALSE(PSimThreadMark::isOf(&m_client));
}

TEST_F(PSimEventThreadTest, a_code_posted_once_waits_once) {
    startAndHold();
    m_thread->postOnce(1);
    m_thread->postOnce(1);
    m_thread->postOnce(2);
    EXPECT_TRUE(m_thread->isWaiting(1));
    EXPECT_FALSE(m_thread->isWaiting(3));
    release();
    waitForAll();
    EXPECT_THAT(m_client.codes, ElementsAre(Client::hold, 1U, 2U, 0U));
}

TEST_F(PSimEventThreadTest, after_a_stop_what_waits_is_not_reported_but_followed_up) {
    startAndHold();
    std::vector<int> followed;
    m_thread->post(1, [&followed] { followed.push_back(1); });
    m_thread->requestStop();
    release();
    m_thread->join();
    m_thread->post(2, [&followed] { followed.push_back(2); });
    EXPECT_THAT(m_client.codes, ElementsAre(Client::hold));
    EXPECT_THAT(followed, ElementsAre(1, 2));
}

} // namespace
