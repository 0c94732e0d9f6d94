#pragma once
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace vldv::platform {

/// What tells one state of a file from others: a file that was replaced or written to has another.
struct file_stamp {
    std::uint64_t device = 0, number = 0, size = 0;
    std::int64_t seconds = 0, nanoseconds = 0; ///< of the last change of its content
    bool operator==(const file_stamp&) const = default;
    /// Equal size and time: also of a file that was moved or linked, or copied with its time.
    bool isOfSameContent(const file_stamp& other) const noexcept
    {
        return size == other.size && seconds == other.seconds && nanoseconds == other.nanoseconds;
    }
};

/// Of the regular file that a path leads to; nothing when there is none.
std::optional<file_stamp> stamp_of(const std::wstring& path);
/// Opens a file for reading, whatever others do to it. \param in  stays closed with errno set when that fails
/// \return what the opened file was at that moment; nothing when it is no regular file
std::optional<file_stamp> open_stamped(std::ifstream& in, const std::wstring& path);

} // namespace vldv::platform
