#include "cli/folder_keeper.h"

#include <fcntl.h>
#include <unistd.h>

namespace vldv::cli {

folder_keeper::folder_keeper() noexcept : folder(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

folder_keeper::~folder_keeper()
{
    if (folder < 0) return;
    // A folder that cannot be entered any more has no relative paths left to stand for.
    [[maybe_unused]] const int ignored = fchdir(folder);
    close(folder);
}

} // namespace vldv::cli
