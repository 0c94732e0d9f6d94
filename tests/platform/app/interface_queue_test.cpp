// Work that other threads hand to the interface thread.
#include "platform/app/interface_queue.h"

#include "support/HeadlessHost.h"

#include <atomic>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using platform::interface_queue;

TEST(InterfaceQueue, KeepsTheOrderAndWakesOnceAWork)
{
    interface_queue queue;
    int woken = 0;
    std::vector<int> ran;
    EXPECT_TRUE(queue.post([&] { ran.push_back(1); })) << "before there is a loop";
    queue.open([&] { ++woken; });
    EXPECT_EQ(woken, 1);
    queue.post([&] {
        ran.push_back(2);
        queue.post([&] { ran.push_back(3); });
    });
    EXPECT_EQ(woken, 2);
    while (queue.runNext()) continue;
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(woken, 3);
    EXPECT_FALSE(queue.runNext());
}

TEST(InterfaceQueue, AFailingWorkLeavesTheOthers)
{
    interface_queue queue;
    bool ran = false;
    queue.post([] { throw std::runtime_error("broken"); });
    queue.post([&] { ran = true; });
    EXPECT_THROW(queue.runNext(), std::runtime_error);
    EXPECT_TRUE(queue.runNext());
    EXPECT_TRUE(ran);
}

TEST(InterfaceQueue, HoldsWorkBackAndWakesForItAfterwards)
{
    interface_queue queue;
    int woken = 0, ran = 0;
    queue.open([&] { ++woken; });
    queue.hold();
    queue.hold();
    queue.post([&] { ++ran; });
    queue.post([&] { ++ran; });
    EXPECT_FALSE(queue.runNext()) << "the loop was woken and could not";
    queue.resume();
    EXPECT_FALSE(queue.runNext()) << "held twice";
    woken = 0;
    queue.resume();
    EXPECT_EQ(woken, 2) << "once for each call that was in vain";
    while (queue.runNext()) continue;
    EXPECT_EQ(ran, 2);
}

TEST(InterfaceQueue, RefusesWorkWhenTheProgramEnds)
{
    std::shared_ptr<interface_queue> kept;
    auto token = std::make_shared<int>();
    bool ran = false;
    {
        CHeadlessHost host;
        kept = host.interfaceQueue();
        EXPECT_TRUE(host.runOnInterfaceThread([&ran, token] { ran = true; }));
        EXPECT_EQ(token.use_count(), 2);
    }
    EXPECT_EQ(token.use_count(), 1) << "what waited was dropped";
    EXPECT_FALSE(kept->post([&ran] { ran = true; })) << "the host is gone";
    EXPECT_FALSE(kept->runNext());
    EXPECT_FALSE(ran);
}

TEST(InterfaceQueue, TakesWorkFromManyThreadsUntilItCloses)
{
    interface_queue queue;
    constexpr int threads = 4;
    std::atomic<int> taken = 0, refused = 0;
    int ran = 0;
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([&] {
            while (queue.post([&ran] { ++ran; })) ++taken;
            ++refused;
        });
    while (ran < 1000) queue.runNext();
    queue.close();
    for (std::thread& worker : workers) worker.join();
    EXPECT_EQ(refused, threads);
    EXPECT_LE(ran, taken);
    EXPECT_FALSE(queue.runNext());
}

} // namespace
