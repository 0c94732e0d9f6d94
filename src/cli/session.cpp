#include "cli/session.h"

#include "base/text.h"
#include "cli/progress.h"
#include "platform/paths.h"

#include <iostream>

namespace cli {

std::filesystem::path identity(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
    return error ? path : real;
}

void session::setFiles(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        inputs.push_back(platform::full_path(base::widen(path)));
        inputIdentities.insert(identity(platform::to_path(inputs.back())));
    }
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
