#include "host/termination.h"

#include <QApplication>
#include <QObject>
#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>

namespace {

TEST(Termination, ASignalDisturbsNothingThatItInterrupts)
{
    constexpr int moreThanAPipeHolds = 70'000;
    QObject owner;
    int told = 0;
    host::on_termination(owner, [&told] { ++told; });
    errno = 0;
    for (int i = 0; i < moreThanAPipeHolds && errno == 0; ++i) raise(SIGTERM);
    EXPECT_EQ(errno, 0) << "the code that was interrupted may be about to look at it";
    struct sigaction action{};
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        ASSERT_EQ(sigaction(signal, nullptr, &action), 0);
        EXPECT_NE(action.sa_flags & SA_RESTART, 0) << signal;
    }
    QApplication::processEvents();
    EXPECT_EQ(told, 1);
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) std::signal(signal, SIG_DFL);
}

} // namespace
