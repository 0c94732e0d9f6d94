#include "document/stream_source.h"

#include "base/text.h"
#include "platform/paths.h"

#include <fstream>

namespace document {

namespace {

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
    if (offset > bytes || out.size() > bytes - offset) return false;
    in.clear();
    in.seekg(static_cast<std::streamoff>(offset));
    in.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return in.gcount() == static_cast<std::streamsize>(out.size());
}

std::unique_ptr<formats::source> stream_source::sibling(const std::string& siblingName)
{
    if (path.empty() || siblingName.empty() || siblingName.find('/') != std::string::npos || siblingName == "..")
        return nullptr;
    const auto beside = platform::to_path(path).parent_path() / siblingName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(beside, error)) return nullptr;
    auto opened = std::make_unique<file_source>(platform::to_wide(beside));
    return opened->isOpen() ? std::move(opened) : nullptr;
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

} // namespace document
