#pragma once
#include "recovery/kept_source.h"
#include "recovery/snapshot.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>

namespace vldv::recovery {

class background_writer;

/// Where the samples of an image in a state are now, or nothing when they are gone. Valid until the caller returns.
using sample_finder = std::function<std::optional<std::span<const std::byte>>(std::uint64_t state)>;

/// The copy of one document in a folder of its own. Only images whose samples the folder does not hold yet are written.
/// Interface thread only; the files are made by the writer.
class document_copy {
public:
    /// A new copy. \param names_  begins the names of its files; no other program may use it in this folder
    document_copy(std::filesystem::path folder_, std::string names_, background_writer& writer_);
    /// A copy that is there already and holds `state`, or nothing that is good any more; `files` tells which of its
    /// files has which samples.
    document_copy(std::filesystem::path folder_, std::string names_, background_writer& writer_,
                  std::optional<document::content_state> state, std::map<std::uint64_t, std::string> files);

    const std::filesystem::path& path() const noexcept { return folder; }
    /// The folder holds this state, or will when the writer is done.
    bool holds(const document::content_state& state) const { return committed == state && !hasFailed(); }
    /// All that the folder holds has been written.
    bool isStored() const noexcept { return !hasFailed() && *stored == commits; }
    /// Some of the samples are in the document's file only.
    bool needsSource() const;
    bool isBusy() const noexcept { return current.has_value(); }
    /// Brings the copy to another state from now on; what it held stays good until that is complete.
    void begin(snapshot target);
    /// Hands at most about `budget` bytes of samples on. Gives the state up when samples are gone.
    /// \return the bytes
    std::size_t feed(const sample_finder& find, std::size_t budget);
    /// Begins anew in the same folder, behind a failure, with the samples of its last good state.
    /// \param kept  that state's manifest
    std::unique_ptr<document_copy> again(const kept_document& kept) const;
    /// Writing has failed: the copy stays at an earlier state for good.
    bool hasFailed() const noexcept { return *failed; }

private:
    struct part {
        std::uint64_t state;
        std::uint64_t size, done = 0;
    };
    std::string nameOf(std::uint64_t state) const { return names + std::to_string(state); }
    void write(const part& to, std::span<const std::byte> piece);
    void commit();
    /// Makes the writer store what the image has beside its samples, where the folder does not hold it yet.
    void storeBeside(snapshot& done, std::size_t image);
    template <class Bytes>
    std::string fileOf(std::uint64_t state, Bytes bytes);

    std::filesystem::path folder;
    std::string names;
    background_writer& writer;
    std::shared_ptr<std::atomic<bool>> failed = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<std::atomic<unsigned>> stored = std::make_shared<std::atomic<unsigned>>(0); ///< of the commits
    unsigned commits = 0;
    std::map<std::uint64_t, std::string> written; ///< complete files by the state that they hold
    std::shared_ptr<known_source> ofSource = std::make_shared<known_source>(); ///< the writer's alone
    std::optional<document::content_state> committed;
    std::optional<snapshot> current;
    std::vector<part> parts; ///< of the current one, that are not written yet; the last is next
};

/// Removes what the manifest in a folder does not name: all where there is none.
void remove_unnamed(const std::filesystem::path& folder);

} // namespace vldv::recovery
