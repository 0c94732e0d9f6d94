#pragma once
#include <functional>
#include <string>

namespace vldv::host {

/// What menus call a command, without access key and dots: "Duplicate", "Save As". Also of an entry that the program
/// supplies now; empty for a number that no menu has.
std::string command_name(unsigned id);

/// The door through which all commands go. When memory runs out the user is told for what, and the program goes on.
/// \return what `run` returns; true when it was broken off
bool run_command(unsigned id, const std::function<bool()>& run);

/// Whether one that went through the door has not returned yet.
bool command_runs() noexcept;

/// Runs `work` between two events and after all commands that run now: a command's menu must outlive it, also where it
/// waits for an answer in a loop of its own.
void after_commands(std::function<void()> work);

/// Does what `run_command` does for what has no number, as a file that is dropped on the window.
void run_named(const std::string& operation, const std::function<void()>& run);

} // namespace vldv::host
