#include "platform/files/text_file.h"

#include "platform/files/Exceptions.h"
#include "platform/files/atomic_file.h"
#include "platform/files/paths.h"

#include <cerrno>
#include <fstream>

namespace vldv::platform {

std::string read_text_file(const std::filesystem::path& file, std::size_t maxBytes)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error) throw CFileException(error.value(), to_wide(file));
    if (size > maxBytes) throw CFileException(EFBIG, to_wide(file));
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    std::string content(size, '\0');
    if (in) in.read(content.data(), static_cast<std::streamsize>(size));
    if (!in) throw CFileException(errno ? errno : EIO, to_wide(file));
    return content;
}

void write_text_file(const std::filesystem::path& file, std::string_view text)
{
    atomic_file out(file);
    out.write(std::as_bytes(std::span(text)));
    out.commit();
}

} // namespace vldv::platform
