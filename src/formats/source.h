#pragma once
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// What a reader reads from: bytes of known number, by position. Knows no file system; a file, a stream or a block of
/// memory stands behind it.
class source {
public:
    virtual ~source() = default;

    virtual std::uint64_t size() const = 0;
    /// Fills `out` from position `offset`. \return false when not all of it is there or reading failed
    virtual bool read(std::uint64_t offset, std::span<std::byte> out) = 0;
    /// File name without folder, UTF-8; may be empty.
    virtual const std::string& name() const = 0;
    /// A file beside this one; null when there is none or the name holds a path.
    virtual std::unique_ptr<source> sibling(const std::string& fileName) = 0;
    /// Names of the files beside this one, unordered.
    virtual std::vector<std::string> siblings() = 0;
    /// Tells how much is done, 0 to 1. \return false when the user cancelled; the reader then gives up with an error
    virtual bool progress(double /*done*/) { return true; }

    /// Everything, for small formats. \return false when reading failed
    bool readAll(std::vector<std::byte>& out);
};

/// Bytes in memory. `name_` and the siblings may stay empty.
class VLDV_INTERNAL_API memory_source : public source {
public:
    explicit memory_source(std::span<const std::byte> bytes_, std::string name_ = {})
        : bytes(bytes_), fileName(std::move(name_))
    {
    }
    std::uint64_t size() const override { return bytes.size(); }
    bool read(std::uint64_t offset, std::span<std::byte> out) override;
    const std::string& name() const override { return fileName; }
    std::unique_ptr<source> sibling(const std::string&) override { return nullptr; }
    std::vector<std::string> siblings() override { return {}; }

private:
    std::span<const std::byte> bytes;
    std::string fileName;
};

} // namespace vldv::formats
