#pragma once
#include "cli/CliHost.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "platform/files/temporary_file.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace vldv::cli {

/// Exit statuses.
constexpr int allDone = 0, someFailed = 1, badUsage = 2;

/// Thrown where a file holds nothing that the command treats: a failure of a file that was named, while one that was
/// found in a folder is passed over.
class nothing_to_treat : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What all sub-commands share: the application, the files of the call and how failures are told.
class session {
public:
    session() : app(host) {}

    /// A folder stands for the recordings in it and below it, "-" for standard input.
    /// \param outputs  where results go: such a folder below one of the call holds those of an earlier call, no inputs
    void setFiles(const std::vector<std::string>& paths, const std::vector<std::string>& outputs = {});
    /// One path, which is never taken for a folder, or "-".
    void setFile(const std::string& path);
    const std::vector<std::wstring>& files() const noexcept { return inputs; }
    /// Where the present input lies below the folder of the call that brought it; empty for one right in it or named.
    std::filesystem::path placeBelow() const;
    /// Takes a name for a result. A file of the call is never written, nor the same file twice, by whatever name. What
    /// a folder brought into the call behind the present input, under its name and more, is a result of an earlier call
    /// where such a name is taken, and no input.
    /// \throws std::runtime_error with the reason
    void claim(const std::filesystem::path& output);
    /// Whether a result would take the place of the present input, which a folder brought into the call.
    bool isFoundItself(const std::filesystem::path& output) const;

    /// Where to read a file of the call: itself, or what standard input is kept in. \throws std::runtime_error
    std::filesystem::path readable(const std::wstring& path);
    /// The document of a file, or null; `failure` then says why. The current folder stays what it is.
    std::unique_ptr<CStorageDoc> open(const std::wstring& path, std::string& failure);
    /// Whether `save` may replace containers that hold something else; from the start it may not.
    void letReplace(bool on) noexcept { replaces = on; }
    /// Whether what readers left out or had to change is told on standard error before a file is used; at first it is.
    void letTellNotes(bool on) noexcept { tellsNotes = on; }
    /// Saves without asking, under a name that nothing else of the call has. What lies there already stays when it
    /// holds the same, too. \return empty, or why it failed and where
    std::string save(CStorageDoc& document, const std::wstring& path);
    /// Writes "PATH: REASON" to standard error, once, and remembers that something failed.
    void report(const std::wstring& path, const std::string& reason);
    int status() const noexcept { return failed ? someFailed : allDone; }

    /// Counts the present file as one that holds nothing to treat.
    void passOver() noexcept { ++passedOver; }

    /// Opens each file in turn and hands it over; tells failures, also those that `use` throws, goes on with the next
    /// file, and shows the progress on a terminal. What was passed over is counted on standard error in the end; that
    /// nothing else was there is a failure.
    void forEachDocument(const std::function<void(CStorageDoc&, const std::wstring&)>& use,
                         const std::function<void(const std::wstring&, const std::string&)>& onFailure = {});

private:
    /// How a file came into the call. One that is known by its name alone may well be no recording.
    enum class origin { named, foundByContent, foundByName };

    /// What cannot be opened, known before anything is opened.
    struct known_failure {
        std::wstring path;
        std::string reason;
    };

    void addFolder(const std::wstring& folder, const std::set<std::filesystem::path>& resultFolders);
    void openAndUse(std::size_t index, const std::function<void(CStorageDoc&, const std::wstring&)>& use,
                    std::string& failure);
    std::unique_ptr<CStorageDoc> openStandardInput(std::string& failure);
    std::string withoutKeptName(std::string reason) const;
    std::string whyTaken(const std::filesystem::path& identity) const;
    bool isEarlierResult(const std::filesystem::path& identity) const;
    void setAside(const std::filesystem::path& identity);
    void tellPassedOver();
    void tellNotes(const CStorageDoc& document, const std::wstring& path) const;

    CCliHost host;
    CWinApp app;
    std::vector<std::wstring> inputs;
    std::vector<origin> origins; ///< one an input
    std::vector<known_failure> knownFailures;
    std::optional<platform::temporary_file> standardInput;
    std::size_t passedOver = 0;
    std::vector<std::filesystem::path> identities;  ///< one an input
    std::vector<std::filesystem::path> placesBelow; ///< one an input
    std::set<std::filesystem::path> namedIdentities, earlierResults;
    std::map<std::filesystem::path, std::wstring> madeFrom; ///< outputs, and the inputs that they hold
    std::map<std::filesystem::path, std::size_t> foundAt;   ///< identities of inputs out of folders
    std::optional<std::size_t> current;                     ///< input
    bool failed = false, replaces = false, tellsNotes = true;
};

} // namespace vldv::cli
