#pragma once
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdlib.h>
#include <string>

/// A folder of its own for one test, removed with everything in it.
class temporary_folder {
public:
    temporary_folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "vldv-test-XXXXXX").native();
        path = mkdtemp(name.data());
    }
    temporary_folder(const temporary_folder&) = delete;
    temporary_folder& operator=(const temporary_folder&) = delete;
    ~temporary_folder()
    {
        std::error_code ignored;
        std::filesystem::current_path("/", ignored);
        std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path operator/(const std::string& name) const { return path / name; }
    std::size_t files() const
    {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(path)) ++count;
        return count;
    }

    std::filesystem::path path;
};

inline std::string file_content(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline void write_file(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}
