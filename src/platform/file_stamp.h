#pragma once
#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// What tells one state of a file from others: a file that was replaced or written to has another.
struct file_stamp {
    std::uint64_t device = 0, number = 0, size = 0;
    std::int64_t seconds = 0, nanoseconds = 0; ///< of the last change of its content
    bool operator==(const file_stamp&) const = default;
};

/// Of the regular file that a path leads to; nothing when there is none.
std::optional<file_stamp> stamp_of(const std::wstring& path);

} // namespace platform
