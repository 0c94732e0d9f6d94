#pragma once
#include "document/formats/source.h"

#include <functional>
#include <istream>
#include <string>

namespace document {

/// A source on an input stream that can seek. Files beside it are found in the folder of `path_`, which may be empty.
class stream_source : public formats::source {
public:
    stream_source(std::istream& in_, const std::wstring& path_);

    std::uint64_t size() const override { return bytes; }
    bool read(std::uint64_t offset, std::span<std::byte> out) override;
    const std::string& name() const override { return fileName; }
    std::unique_ptr<formats::source> sibling(const std::string& fileName) override;
    std::vector<std::string> siblings() override;
    bool progress(double done) override { return !onProgress || onProgress(done); }

    /// Told how much is done; false gives up. May stay empty.
    std::function<bool(double)> onProgress;

private:
    std::istream& in;
    std::wstring path;
    std::string fileName;
    std::uint64_t bytes = 0;
};

} // namespace document
