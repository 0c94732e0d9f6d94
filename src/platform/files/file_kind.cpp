#include "platform/files/file_kind.h"

namespace vldv::platform {

std::string special_kind(const std::filesystem::path& path)
{
    std::error_code error;
    switch (std::filesystem::status(path, error).type()) {
    case std::filesystem::file_type::fifo:
        return "this is a pipe, not a file";
    case std::filesystem::file_type::character:
    case std::filesystem::file_type::block:
        return "this is a device, not a file";
    case std::filesystem::file_type::socket:
        return "this is a socket, not a file";
    default:
        return {};
    }
}

} // namespace vldv::platform
