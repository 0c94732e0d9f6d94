#pragma once
#include "recovery/background_writer.h"
#include "recovery/document_copy.h"
#include "recovery/session_folder.h"

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

class CStorageDoc;
class SPMDataStream;

namespace vldv::recovery {

/// How long `autosave::step` waits before it does again what costs something.
struct autosave_pauses {
    std::chrono::milliseconds retry{10'000}; ///< a copy that could not be written, while its document stays as it is
    std::chrono::milliseconds look{1'000};   ///< whether the files are there that copies refer to
};

/// Keeps a copy of every document that differs from its file, as long as it does, and of those that close so. Interface
/// thread only: `step` is called many times a second and never takes long, since it hands samples on in pieces.
class autosave {
public:
    /// \param root  the state folder; \throws CException when nothing can be kept there
    explicit autosave(const std::filesystem::path& root_, autosave_pauses pauses_ = {});
    /// As `finish`. What cannot be finished stays for the next session, as after a crash.
    ~autosave();

    /// The copies of closed documents, in the same state folder.
    const std::filesystem::path& closedFolder() const noexcept { return closed; }

    /// Looks what has changed and hands a piece of it to the writer.
    void step(const std::vector<CStorageDoc*>& open);
    /// All that `step` has seen so far is written, or could not be.
    bool isUpToDate() const;
    /// Some work is not kept at the moment.
    bool hasFailed() const;
    /// A document closes. Its images are taken over when they are not kept yet.
    void documentCloses(CStorageDoc& document);
    /// A closed document is open again: the copy in `folder` becomes its own.
    /// \return where the copy is now; empty when another program was faster
    std::filesystem::path takeCopy(const std::filesystem::path& folder);
    /// \param isAsKept  the copy needs nothing but what it refers to
    void adopt(CStorageDoc& document, const std::filesystem::path& folder, std::map<std::uint64_t, std::string> files,
               bool isAsKept);
    /// A file is about to be replaced or moved away: copies that refer to it get it for their own.
    /// \return why one could not get it; no error when all is well
    std::error_code fileGoes(const std::filesystem::path& file);
    /// Returns when everything is written; closed documents are then among the closed ones.
    void finish();
    /// The program ends and nobody was asked: the copies of what is open are brought up to date and stay, as those of a
    /// program that died. What closes from now on is the program's own doing.
    void leave(const std::vector<CStorageDoc*>& open);
    /// Why work is not kept, once, behind the titles of the documents; empty while all is well.
    std::string takeError();

    static constexpr std::size_t stepBytes = std::size_t{16} << 20;    ///< of samples that one step copies
    static constexpr std::size_t waitingBytes = std::size_t{64} << 20; ///< that the writer may be behind

private:
    using clock = std::chrono::steady_clock;
    struct tracked {
        const CStorageDoc* document = nullptr; ///< null: closed, and `held` has its images
        std::wstring title;
        std::vector<std::pair<std::uint64_t, SPMDataStream>> held;
        std::unique_ptr<document_copy> copy;
        document::content_state wanted;  ///< that was begun last
        std::optional<snapshot> closing; ///< of a closed one, until it is stored
        std::filesystem::path former;    ///< a copy that could not be kept up, until there is a better one
        clock::time_point retry;         ///< no sooner, unless the document changes
    };
    void dropUnchanged(const std::vector<CStorageDoc*>& open);
    void keep(const CStorageDoc& document, std::size_t& budget, bool looks);
    /// A copy that could not be written, say because the disk was full, begins anew: in its folder where that holds an
    /// earlier state, else in another.
    void replaceFailed(tracked& entry);
    /// Another copy is as good by now.
    void dropFormer(tracked& entry);
    /// Everything that is still in memory of it.
    void feedAll(tracked& entry);
    void retryClosed(clock::time_point now);
    tracked& entryOf(const CStorageDoc& document);
    document_copy newCopy();
    std::size_t feed(tracked& entry, std::size_t budget);
    /// The document does not differ from its file any more.
    /// \param lostImages  a reading that failed is why, or one that gave not all: the copy stays
    void letGo(const tracked& entry, bool lostImages);
    void discard(const tracked& entry);
    void moveToClosed(const tracked& entry);
    /// Those that have closed and are complete.
    void settleClosed();
    void feedAll();

    std::filesystem::path root;
    session_folder session;
    std::filesystem::path closed;
    autosave_pauses pauses;
    clock::time_point nextLook;
    std::vector<tracked> entries;
    std::set<std::wstring> failedTitles; ///< of copies that began anew since the last error was taken
    unsigned copies = 0;
    bool hasLeft = false;
    background_writer writer; ///< the last member: what it still does may use the folders
};

} // namespace vldv::recovery
