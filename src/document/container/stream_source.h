#pragma once
#include "formats/source.h"
#include "vldv_api.h"

#include <functional>
#include <istream>
#include <string>

namespace vldv::document {

/// A source on an input stream that can seek. Files beside it are found in the folder of `path_`, which may be empty.
/// Reading tells its progress by itself, by the bytes that were read so far; a reader that knows better tells more.
class VLDV_INTERNAL_API stream_source : public formats::source {
public:
    stream_source(std::istream& in_, const std::wstring& path_);

    std::uint64_t size() const override { return bytes; }
    bool read(std::uint64_t offset, std::span<std::byte> out) override;
    const std::string& name() const override { return fileName; }
    std::unique_ptr<formats::source> sibling(const std::string& fileName) override;
    std::vector<std::string> siblings() override;
    bool progress(double done) override;
    bool hasOpenedSiblings() const noexcept { return openedSiblings; }

    /// Told how much is done, which never falls; false gives up, and every read fails from then on. May stay empty.
    std::function<bool(double)> onProgress;

private:
    std::istream& in;
    std::wstring path;
    std::string fileName;
    std::uint64_t bytes = 0, bytesRead = 0, bytesTold = 0;
    double furthest = 0.0;
    bool isCancelled = false, openedSiblings = false;
};

} // namespace vldv::document
