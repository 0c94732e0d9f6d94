#include "cli/session.h"

#include "base/text.h"
#include "cli/folder_keeper.h"
#include "cli/output/existing_container.h"
#include "cli/output/failure_text.h"
#include "cli/output/progress.h"
#include "cli/output/reader_notes.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "document/container/recording_folder.h"
#include "platform/files/paths.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace vldv::cli {

namespace {

std::wstring full_path(const std::string& path) { return platform::full_path(base::widen(path)); }

/// Two names of one file give equal paths, also for a file that is not there yet.
std::filesystem::path identity(const std::filesystem::path& path)
{
    std::error_code error;
    // Links and dots are followed as far as the path exists; the rest is taken as it stands.
    const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
    return error ? path : real;
}

/// A message stays on its line whatever path it names.
std::string with_visible(std::string message, const std::string& path)
{
    const std::string shown = visible_text(path);
    for (std::size_t at = 0; !path.empty() && (at = message.find(path, at)) != std::string::npos; at += shown.size())
        message.replace(at, path.size(), shown);
    return message;
}

std::string named(const std::filesystem::path& output)
{
    return "the output \"" + visible_text(output.native()) + "\" ";
}

} // namespace

void session::setFiles(const std::vector<std::string>& paths, const std::vector<std::string>& outputs)
{
    std::set<std::filesystem::path> resultFolders;
    for (const std::string& output : outputs)
        if (output != standardStream) resultFolders.insert(identity(platform::to_path(full_path(output))));
    // What earlier calls left where results go comes behind all that it may have been made from.
    std::vector<std::wstring> lastFolders;
    for (const std::string& path : paths) {
        const std::wstring full = full_path(path);
        std::error_code error;
        if (path == standardStream || !std::filesystem::is_directory(platform::to_path(full), error))
            setFile(path);
        else if (resultFolders.contains(identity(platform::to_path(full))))
            lastFolders.push_back(full);
        else
            addFolder(full, resultFolders);
    }
    for (const std::wstring& folder : lastFolders) addFolder(folder, resultFolders);
}

void session::addFolder(const std::wstring& folder, const std::set<std::filesystem::path>& resultFolders)
{
    const document::folder_content found =
        document::recordings_in(platform::to_path(folder), [&](const std::filesystem::path& below) {
            return resultFolders.contains(identity(below));
        });
    for (const auto& [path, reason] : found.unreadables) knownFailures.push_back({platform::to_wide(path), reason});
    if (found.recordings.empty() && found.unreadables.empty())
        knownFailures.push_back({folder, document::why_no_recordings(found)});
    for (const auto& [file, isCertain] : found.recordings) {
        inputs.push_back(platform::to_wide(file));
        origins.push_back(isCertain ? origin::foundByContent : origin::foundByName);
        identities.push_back(identity(file));
        placesBelow.push_back(file.lexically_relative(platform::to_path(folder)).parent_path());
        foundAt.try_emplace(identities.back(), inputs.size() - 1);
    }
}

void session::setFile(const std::string& path)
{
    const bool isStream = path == standardStream;
    inputs.push_back(isStream ? base::widen(path) : full_path(path));
    origins.push_back(origin::named);
    identities.push_back(isStream ? std::filesystem::path() : identity(platform::to_path(inputs.back())));
    placesBelow.emplace_back();
    if (!isStream) namedIdentities.insert(identities.back());
}

std::filesystem::path session::placeBelow() const { return current ? placesBelow[*current] : std::filesystem::path(); }

void session::claim(const std::filesystem::path& output)
{
    const std::filesystem::path real = identity(output);
    if (const std::string why = whyTaken(real); !why.empty()) throw std::runtime_error(named(output) + why);
    if (document::is_recording(output))
        throw std::runtime_error(named(output) + "is a recording, which no result replaces");
    if (document::has_recording_name(output))
        throw std::runtime_error(named(output) + "has an ending of recordings, which no table or picture gets");
    setAside(real);
    madeFrom.emplace(real, current ? inputs[*current] : std::wstring());
}

std::string session::whyTaken(const std::filesystem::path& real) const
{
    if (namedIdentities.contains(real) || (foundAt.contains(real) && !isEarlierResult(real)))
        return "is an input of this call";
    const auto made = madeFrom.find(real);
    if (made == madeFrom.end()) return {};
    if (!current || made->second == inputs[*current]) return "is taken by another result of this call";
    return "is taken by the result of \"" + visible_text(base::narrow(made->second)) + '"';
}

bool session::isEarlierResult(const std::filesystem::path& real) const
{
    const auto found = foundAt.find(real);
    // A file that was found in a folder, whose turn is still to come and whose name begins with that of the file being
    // treated, counts as what an earlier call made of this one. It may be replaced, and is then not treated itself.
    return current && found != foundAt.end() && found->second > *current &&
           real.filename().native().starts_with(identities[*current].filename().native());
}

void session::setAside(const std::filesystem::path& real)
{
    if (foundAt.contains(real)) earlierResults.insert(real);
}

bool session::isFoundItself(const std::filesystem::path& output) const
{
    return current && origins[*current] != origin::named && identities[*current] == identity(output);
}

std::filesystem::path session::readable(const std::wstring& path)
{
    if (path != base::widen(standardStream)) return platform::to_path(path);
    if (standardInput) throw std::runtime_error("standard input can be read only once");
    take_standard_input(standardInput.emplace());
    return standardInput->path();
}

std::unique_ptr<CStorageDoc> session::open(const std::wstring& path, std::string& failure)
{
    if (path == base::widen(standardStream)) return openStandardInput(failure);
    const folder_keeper kept;
    auto document = std::make_unique<CStorageDoc>();
    if (document->OnOpenDocument(path.c_str())) {
        document->SetPathName(path.c_str(), false);
        return document;
    }
    failure = host.takeMessages();
    if (failure.empty()) failure = "could not be opened";
    return nullptr;
}

std::unique_ptr<CStorageDoc> session::openStandardInput(std::string& failure)
{
    const std::filesystem::path kept = readable(base::widen(standardStream));
    std::unique_ptr<CStorageDoc> document = open(platform::to_wide(kept), failure);
    if (document) document->SetPathName(base::widen(standardStream).c_str(), false);
    return document;
}

/// A reason names the file that standard input is kept in.
std::string session::withoutKeptName(std::string reason) const
{
    const std::string kept = standardInput ? standardInput->path().native() : std::string();
    const std::size_t at = kept.empty() ? std::string::npos : reason.find(kept);
    return at == std::string::npos ? reason : reason.replace(at, kept.size(), "standard input");
}

std::string session::save(CStorageDoc& document, const std::wstring& path)
{
    const std::filesystem::path output = platform::to_path(path), real = identity(output);
    if (const std::string why = whyTaken(real); !why.empty()) return named(output) + why;
    setAside(real);
    // A container that holds the same already counts as saved, so that a call can be repeated; another one stays.
    const existing_file there = replaces ? existing_file::none : look_for_existing(output, document);
    const bool isStored = there == existing_file::same;
    if (!isStored && there != existing_file::none)
        return named(output) + "exists and " + what_is(there) + "; --force replaces it";
    if (!isStored && !document.DoSave(path.c_str(), false)) {
        const std::string reason = host.takeMessages();
        return reason.empty() ? named(output) + "could not be saved" : with_visible(reason, base::narrow(path));
    }
    madeFrom.emplace(real, current ? inputs[*current] : std::wstring());
    return {};
}

void session::report(const std::wstring& path, const std::string& reason)
{
    failed = true;
    const std::string file = base::narrow(path);
    // Most reasons name the file already; a result may be called FILE.spm.
    const bool isNamed = file != standardStream && reason.starts_with(file + ':');
    std::cerr << (isNamed ? "" : visible_text(file) + ": ") << visible_lines(with_visible(reason, file)) << '\n';
}

void session::openAndUse(std::size_t index, const std::function<void(CStorageDoc&, const std::wstring&)>& use,
                         std::string& failure)
try {
    const auto document = open(inputs[index], failure);
    if (document) use(*document, inputs[index]);
    // A file of a folder that only has a common name, as a text, need not be a recording: it is passed over without an
    // error.
    if (document || origins[index] != origin::foundByName) return;
    failure.clear();
    passOver();
} catch (const nothing_to_treat& reason) {
    if (origins[index] == origin::named)
        failure = reason.what();
    else
        passOver();
} catch (const std::exception& thrown) {
    failure = failure_text(thrown);
}

void session::tellNotes(const CStorageDoc& document, const std::wstring& path) const
{
    if (!tellsNotes) return;
    for (const std::string& note : notes_of(document))
        std::cerr << visible_text(base::narrow(path)) << ", note: " << visible_text(note) << '\n';
}

void session::tellPassedOver()
{
    if (passedOver == 0) return;
    std::cerr << passedOver << " of " << inputs.size() << " files hold nothing to treat and were passed over\n";
    failed = failed || passedOver == inputs.size();
    passedOver = 0;
}

void session::forEachDocument(const std::function<void(CStorageDoc&, const std::wstring&)>& use,
                              const std::function<void(const std::wstring&, const std::string&)>& onFailure)
{
    const auto fail = [&](const std::wstring& path, const std::string& reason) {
        report(path, reason);
        if (onFailure) onFailure(path, reason);
    };
    for (const known_failure& each : std::exchange(knownFailures, {})) fail(each.path, each.reason);
    progress_bar progress(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (earlierResults.contains(identities[i])) continue;
        current = i;
        host.onProgress = [&](double part) { progress.tell(part); };
        std::string failure;
        openAndUse(
            i,
            [&](CStorageDoc& document, const std::wstring& path) {
                progress.clear();
                tellNotes(document, path);
                use(document, path);
            },
            failure);
        progress.clear();
        if (!failure.empty()) fail(inputs[i], withoutKeptName(std::move(failure)));
        progress.advance();
        while (host.interfaceQueue()->runNext()) continue; // what other threads asked for meanwhile
    }
    progress.clear();
    tellPassedOver();
    host.onProgress = nullptr;
}

} // namespace vldv::cli
