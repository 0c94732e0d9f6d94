#pragma once
#include "entry/source_choice.h"
#include "recovery/autosave.h"
#include "recovery/closed_documents.h"
#include "vldv_api.h"

#include <memory>
#include <string>

class CDocument;

namespace vldv::entry {

/// The user's unsaved work outside of the program: copies of what is open, and what was closed to be opened again.
class VLDV_INTERNAL_API kept_work {
public:
    /// Begins to keep copies in the state folder. Where that is impossible the output pane says why.
    void begin(const std::filesystem::path& state);
    /// Many times a second.
    void step();
    void documentCloses(CDocument& document);
    /// A file is about to be replaced or moved away.
    void fileGoes(const std::wstring& path) noexcept;
    /// Offers what a program had open and modified that died. What the user does not want stays among the closed ones.
    void offerRecovery();

    /// Closed documents, the latest first.
    std::size_t closedCount();
    std::vector<std::string> closedLabels();
    /// Opens one of them again, as it was. \param index  in `closedLabels` as they were given last, whatever closed
    /// since
    void reopen(std::size_t index);
    /// Returns when all is written, or cannot be: then it stays as after a crash.
    void finish() noexcept;
    /// The program is ended from outside: what is open, and what is just being offered, stays as after a crash, to be
    /// offered by the next start.
    void leave();

private:
    void openCopy(const std::filesystem::path& folder);
    void openTaken(const recovery::kept_document& kept, const source_choice& from, const std::filesystem::path& taken,
                   const std::filesystem::path& before);

    std::unique_ptr<recovery::autosave> copies; ///< null: nothing is kept
    std::unique_ptr<recovery::closed_documents> closed;
    std::filesystem::path sessions;
    std::vector<std::filesystem::path> labelled; ///< copies, as the menu shows them
    std::string toldFailure;                     ///< why work is not kept at the moment
    bool hasLeft = false;
};

} // namespace vldv::entry
