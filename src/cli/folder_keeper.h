#pragma once

namespace vldv::cli {

/// Puts the current folder back in the end. A document that is opened makes that of its file the current one, and the
/// paths of a call stand for what they did when the call was made.
class folder_keeper {
public:
    folder_keeper() noexcept;
    folder_keeper(const folder_keeper&) = delete;
    folder_keeper& operator=(const folder_keeper&) = delete;
    ~folder_keeper();

private:
    int folder; ///< a descriptor, good also for a folder that is moved or that has no path
};

} // namespace vldv::cli
