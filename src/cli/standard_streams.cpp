#include "cli/standard_streams.h"

#include "platform/temporary_file.h"

#include <array>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace cli {

namespace {

void refuse_terminal()
{
    if (isatty(STDOUT_FILENO) == 1)
        throw std::runtime_error("standard output is a terminal: send it to a file or a pipe");
}

} // namespace

void take_standard_input(const platform::temporary_file& file)
{
    if (isatty(STDIN_FILENO) == 1) throw std::runtime_error("standard input is a terminal");
    std::ofstream out(file.path(), std::ios::binary);
    std::array<char, 1 << 16> bytes;
    bool isEmpty = true;
    while (out && std::cin.read(bytes.data(), bytes.size()).gcount() > 0) {
        out.write(bytes.data(), std::cin.gcount());
        isEmpty = false;
    }
    out.close();
    if (!out) throw std::runtime_error("standard input could not be kept in " + file.path().native());
    if (std::cin.bad()) throw std::runtime_error("standard input could not be read");
    if (isEmpty) throw std::runtime_error("standard input is empty");
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

} // namespace cli
