#include "cli/output/standard_streams.h"

#include "platform/files/temporary_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace vldv::cli {

namespace {

void refuse_terminal()
{
    if (isatty(STDOUT_FILENO) == 1)
        throw std::runtime_error("standard output is a terminal: send it to a file or a pipe");
}

/// A device may never end.
void refuse_input_device()
{
    struct stat status{};
    if (isatty(STDIN_FILENO) == 1) throw std::runtime_error("standard input is a terminal");
    if (fstat(STDIN_FILENO, &status) == 0 && (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)))
        throw std::runtime_error("standard input is a device: only files and pipes are read");
}

/// Bytes that may be kept without filling the file system: a twentieth of it, at most 1 GiB, stays free.
std::uintmax_t room_for(const platform::temporary_file& file)
{
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(file.path(), failed);
    if (failed) return std::numeric_limits<std::uintmax_t>::max(); // a failing write tells
    const std::uintmax_t reserve = std::min<std::uintmax_t>(space.capacity / 20, std::uintmax_t{1} << 30);
    return space.available > reserve ? space.available - reserve : 0;
}

std::runtime_error no_room()
{
    return std::runtime_error("standard input is larger than what the folder for temporary files has room for");
}

/// \param error  of the write, an errno value
std::runtime_error not_kept(int error)
{
    if (error == ENOSPC) return no_room();
    return std::runtime_error(std::string("standard input could not be kept in the folder for temporary files: ") +
                              std::strerror(error ? error : EIO));
}

} // namespace

void take_standard_input(const platform::temporary_file& file)
{
    refuse_input_device();
    std::ofstream out(file.path(), std::ios::binary);
    std::array<char, 1 << 16> bytes;
    const std::uintmax_t room = room_for(file);
    std::uintmax_t kept = 0;
    while (out && std::cin.read(bytes.data(), bytes.size()).gcount() > 0) {
        kept += static_cast<std::uintmax_t>(std::cin.gcount());
        if (kept > room) throw no_room();
        errno = 0;
        out.write(bytes.data(), std::cin.gcount());
    }
    if (out) errno = 0;
    out.close();
    if (!out) throw not_kept(errno);
    if (std::cin.bad()) throw std::runtime_error("standard input could not be read");
    if (kept == 0) throw std::runtime_error("standard input is empty");
}

void put_standard_output(std::span<const std::byte> bytes)
{
    refuse_terminal();
    std::cout.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!std::cout.flush()) throw std::runtime_error("standard output could not be written");
}

void standard_output_archive::Write(const void* bytes, std::size_t count)
{
    put_standard_output({static_cast<const std::byte*>(bytes), count});
}

} // namespace vldv::cli
