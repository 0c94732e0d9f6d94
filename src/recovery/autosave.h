#pragma once
#include "recovery/background_writer.h"
#include "recovery/document_copy.h"
#include "recovery/session_folder.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class CStorageDoc;
class SPMDataStream;

namespace recovery {

/// Keeps a copy of every document that differs from its file, as long as it does, and of those that close so. Interface
/// thread only: `step` is called many times a second and never takes long, since it hands samples on in pieces.
class autosave {
public:
    /// \param root  the state folder; \throws CException when nothing can be kept there
    explicit autosave(const std::filesystem::path& root);
    /// As `finish`.
    ~autosave();

    /// The copies of closed documents, in the same state folder.
    const std::filesystem::path& closedFolder() const noexcept { return closed; }

    /// Looks what has changed and hands a piece of it to the writer.
    void step(const std::vector<CStorageDoc*>& open);
    /// What is written for all that `step` has seen so far.
    bool isUpToDate() const;
    /// A document closes. Its images are taken over when they are not kept yet.
    void documentCloses(CStorageDoc& document);
    /// A closed document is open again: the copy in `folder` becomes its own.
    /// \return where the copy is now; empty when another program was faster
    std::filesystem::path takeCopy(const std::filesystem::path& folder);
    void adopt(CStorageDoc& document, const std::filesystem::path& folder, std::map<std::uint64_t, std::string> files);
    /// Returns when everything is written; closed documents are then among the closed ones.
    void finish();
    /// The program ends and nobody was asked: the copies of what is open are brought up to date and stay, as those of a
    /// program that died. What closes from now on is the program's own doing.
    void leave(const std::vector<CStorageDoc*>& open);
    /// Why work is not kept, once; empty while all is well.
    std::string takeError() { return writer.takeError(); }

    static constexpr std::size_t stepBytes = std::size_t{16} << 20;    ///< of samples that one step copies
    static constexpr std::size_t waitingBytes = std::size_t{64} << 20; ///< that the writer may be behind

private:
    struct tracked {
        const CStorageDoc* document = nullptr; ///< null: closed, and `held` has its images
        std::vector<std::pair<std::uint64_t, SPMDataStream>> held;
        std::unique_ptr<document_copy> copy;
        document::content_state wanted; ///< of a closed one
        std::filesystem::path former;   ///< a copy that could not be kept up, until there is a better one
    };
    /// Another place for a copy that could not be written, say because the disk was full.
    void replaceFailed(tracked& entry);
    tracked& entryOf(const CStorageDoc& document);
    document_copy newCopy();
    std::size_t feed(tracked& entry, std::size_t budget);
    /// The document does not differ from its file any more; of one that a failed reading has emptied the copy stays.
    void letGo(const tracked& entry, bool isEmptied);
    void discard(const tracked& entry);
    void moveToClosed(const tracked& entry);
    /// Those that have closed and are complete.
    void settleClosed();
    void feedAll();

    session_folder session;
    std::filesystem::path closed;
    std::vector<tracked> entries;
    unsigned copies = 0;
    bool hasLeft = false;
    background_writer writer; ///< the last member: what it still does may use the folders
};

} // namespace recovery
