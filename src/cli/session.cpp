#include "cli/session.h"

#include "base/text.h"
#include "cli/progress.h"
#include "platform/paths.h"

#include <algorithm>
#include <fstream>
#include <iostream>

namespace cli {

std::filesystem::path identity(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
    return error ? path : real;
}

namespace {

/// Whether a file claims to be of a format that is known; others in a folder are passed over.
bool is_recording(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::vector<std::byte> head(formats::sniffBytes);
    in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    return formats::find_format(head, file.filename().native()) != nullptr;
}

/// The recordings in a folder and those below it, by name.
std::vector<std::wstring> recordings_in(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error, ignored;
    for (std::filesystem::recursive_directory_iterator
             entry(folder, std::filesystem::directory_options::skip_permission_denied, error),
         end;
         !error && entry != end; entry.increment(error))
        if (entry->is_regular_file(ignored) && is_recording(entry->path())) files.push_back(entry->path());
    std::ranges::sort(files);
    std::vector<std::wstring> paths;
    for (const std::filesystem::path& file : files) paths.push_back(platform::to_wide(file));
    return paths;
}

} // namespace

void session::setFiles(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        const std::wstring full = platform::full_path(base::widen(path));
        std::error_code error;
        const std::filesystem::path file = platform::to_path(full);
        if (!std::filesystem::is_directory(file, error)) {
            setFile(path);
            continue;
        }
        const std::vector<std::wstring> found = recordings_in(file);
        if (found.empty()) report(full, "the folder holds no file that opens");
        inputs.insert(inputs.end(), found.begin(), found.end());
        for (const std::wstring& each : found) inputIdentities.insert(identity(platform::to_path(each)));
    }
}

void session::setFile(const std::string& path)
{
    inputs.push_back(platform::full_path(base::widen(path)));
    inputIdentities.insert(identity(platform::to_path(inputs.back())));
}

std::unique_ptr<CStorageDoc> session::open(const std::wstring& path, std::string& failure)
{
    auto document = std::make_unique<CStorageDoc>();
    if (document->OnOpenDocument(path.c_str())) {
        document->SetPathName(path.c_str(), false);
        return document;
    }
    failure = host.takeMessages();
    if (failure.empty()) failure = "could not be opened";
    return nullptr;
}

std::string session::save(CStorageDoc& document, const std::wstring& path)
{
    if (document.DoSave(path.c_str(), false)) return {};
    const std::string reason = host.takeMessages();
    return reason.empty() ? "could not be saved" : reason;
}

void session::report(const std::wstring& path, const std::string& reason)
{
    failed = true;
    const std::string file = base::narrow(path);
    // Most reasons name the file already.
    if (reason.find(file) == std::string::npos) std::cerr << file << ": ";
    std::cerr << reason << '\n';
}

void session::forEachDocument(const std::function<void(CStorageDoc&, const std::wstring&)>& use,
                              const std::function<void(const std::wstring&, const std::string&)>& onFailure)
{
    progress_bar progress(inputs.size());
    host.onProgress = [&](double part) { progress.tell(part); };
    for (const std::wstring& path : inputs) {
        std::string failure;
        try {
            const auto document = open(path, failure);
            progress.clear(); // what follows may print
            if (document) use(*document, path);
        } catch (const std::exception& thrown) {
            failure = thrown.what();
        }
        if (!failure.empty()) {
            progress.clear(); // of a failure that was thrown
            report(path, failure);
            if (onFailure) onFailure(path, failure);
        }
        progress.advance();
    }
    host.onProgress = nullptr;
}

} // namespace cli
