#include "host/termination.h"

#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vldv::host {

namespace {

int askedToEnd[2] = {-1, -1}; ///< a pipe: all that a signal handler may do is to write a byte

extern "C" void tell_of_signal(int)
{
    const int before = errno; // of whatever is interrupted here
    const char byte = 0;
    [[maybe_unused]] const auto written = write(askedToEnd[1], &byte, 1);
    errno = before;
}

} // namespace

void on_termination(QObject& owner, const std::function<void()>& then)
{
    if (askedToEnd[0] < 0 && pipe2(askedToEnd, O_CLOEXEC | O_NONBLOCK) != 0) return;
    auto* const notifier = new QSocketNotifier(askedToEnd[0], QSocketNotifier::Read, &owner);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [then] {
        char bytes[16];
        while (read(askedToEnd[0], bytes, sizeof bytes) > 0) {}
        then();
    });
    struct sigaction action{};
    action.sa_handler = tell_of_signal;
    action.sa_flags = SA_RESTART; // a save goes on
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) sigaction(signal, &action, nullptr);
}

} // namespace vldv::host
