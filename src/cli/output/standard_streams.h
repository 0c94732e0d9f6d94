#pragma once
#include "platform/files/Archive.h"

#include <cstddef>
#include <span>

namespace vldv::platform {
class temporary_file;
}

namespace vldv::cli {

/// What a call names for standard input and standard output.
inline constexpr const char* standardStream = "-";

/// Stores all that comes from standard input. \throws std::runtime_error with the reason, also when that is a terminal,
/// a device, holds nothing, or more than the file system has room for
void take_standard_input(const platform::temporary_file& file);
/// Writes to standard output behind what was printed. \throws std::runtime_error with the reason, also when that is a
/// terminal, which could not show it
void put_standard_output(std::span<const std::byte> bytes);

/// Standard output as what a document stores itself into.
class standard_output_archive : public CArchive {
public:
    standard_output_archive() : CArchive(L"standard output", true) {}
    void Write(const void* bytes, std::size_t count) override;
};

} // namespace vldv::cli
