#pragma once
#include <functional>

class QObject;

namespace vldv::host {

/// Calls `then` in the event loop when the system asks the program to end (SIGTERM, SIGHUP, SIGINT), for the lifetime
/// of `owner`. Once in a program.
void on_termination(QObject& owner, const std::function<void()>& then);

} // namespace vldv::host
