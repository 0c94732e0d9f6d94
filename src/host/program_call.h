#pragma once
#include <QString>
#include <string>
#include <vector>

namespace vldv::host {

/// What the workstation was called with.
struct program_call {
    std::vector<std::wstring> files; ///< full paths: opening one changes the current folder
    QString screenshot;              ///< full path of a picture to save before ending; empty: none
};

/// Help and version need no display, and without one the toolkit would end the program first: tells them and ends.
void tell_and_end_when_asked(int count, char** arguments, const QString& version);

/// The toolkit aborts without a display and says so in words of its own.
bool has_display(int count, char** arguments);

/// Ends the program, with a message, when an option is unknown. Needs the toolkit's application.
program_call read_call(int count, char** arguments);

} // namespace vldv::host
