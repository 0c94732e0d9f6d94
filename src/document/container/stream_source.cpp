#include "document/container/stream_source.h"

#include "base/text.h"
#include "platform/files/paths.h"

#include <algorithm>
#include <fstream>

namespace vldv::document {

namespace {

constexpr std::size_t pieceBytes = 4u << 20; // read at a time; some milliseconds

/// A file beside another, with the stream that it is read through.
class file_source : public formats::source {
public:
    explicit file_source(const std::wstring& path) : file(platform::to_path(path), std::ios::binary), inner(file, path)
    {
    }

    bool isOpen() const { return file.is_open(); }
    std::uint64_t size() const override { return inner.size(); }
    bool read(std::uint64_t offset, std::span<std::byte> out) override { return inner.read(offset, out); }
    const std::string& name() const override { return inner.name(); }
    std::unique_ptr<formats::source> sibling(const std::string& fileName) override { return inner.sibling(fileName); }
    std::vector<std::string> siblings() override { return inner.siblings(); }

private:
    std::ifstream file;
    stream_source inner;
};

} // namespace

stream_source::stream_source(std::istream& in_, const std::wstring& path_)
    : in(in_), path(path_), fileName(base::narrow(platform::file_name(path_)))
{
    in.clear();
    in.seekg(0, std::ios::end);
    const auto end = in.tellg();
    if (in && end > 0) bytes = static_cast<std::uint64_t>(end);
    in.clear();
    in.seekg(0);
}

bool stream_source::read(std::uint64_t offset, std::span<std::byte> out)
{
    if (isCancelled || offset > bytes || out.size() > bytes - offset) return false;
    in.clear();
    in.seekg(static_cast<std::streamoff>(offset));
    // In pieces, so that a user who cancels waits for one of them only.
    while (!out.empty()) {
        const auto piece = out.first(std::min(out.size(), pieceBytes));
        in.read(reinterpret_cast<char*>(piece.data()), static_cast<std::streamsize>(piece.size()));
        if (in.gcount() != static_cast<std::streamsize>(piece.size())) return false;
        out = out.subspan(piece.size());
        bytesRead += piece.size();
        if (bytesRead - bytesTold < pieceBytes) continue;
        bytesTold = bytesRead;
        if (!progress(static_cast<double>(bytesRead) / static_cast<double>(bytes))) return false;
    }
    return true;
}

bool stream_source::progress(double done)
{
    furthest = std::max(furthest, std::min(done, 1.0));
    if (onProgress && !isCancelled) isCancelled = !onProgress(furthest);
    return !isCancelled;
}

std::unique_ptr<formats::source> stream_source::sibling(const std::string& siblingName)
{
    if (path.empty() || siblingName.empty() || siblingName.find('/') != std::string::npos || siblingName == "..")
        return nullptr;
    const auto beside = platform::to_path(path).parent_path() / siblingName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(beside, error)) return nullptr;
    auto opened = std::make_unique<file_source>(platform::to_wide(beside));
    if (!opened->isOpen()) return nullptr;
    openedSiblings = true;
    return opened;
}

std::vector<std::string> stream_source::siblings()
{
    std::vector<std::string> names;
    if (path.empty()) return names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(platform::to_path(path).parent_path(), error), end;
         !error && entry != end; entry.increment(error))
        names.push_back(entry->path().filename().native());
    return names;
}

} // namespace vldv::document
