#include "base/CZLib.h"

#include "base/text.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <minizip/zip.h>

using namespace vldv;

namespace {

constexpr int failed = -1;
// On noisy 16-bit samples the lazy matching of the levels above takes half as long again and packs them worse.
constexpr int level = 3;
constexpr unsigned long utf8Names = 1u << 11;
constexpr unsigned long madeByUnix = 3u << 8 | 20u;
constexpr unsigned long plainFile = 0100644ul << 16; // an entry without permissions would be unpacked without
constexpr std::size_t longestName = 0xffff;
/// From here on a deflated entry could take more than 4 GiB.
constexpr std::uintmax_t zip64From = 0xf0000000u;

zip_fileinfo stamped_now()
{
    zip_fileinfo info{};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const auto part = [](int value) { return static_cast<unsigned>(value); };
    info.tmz_date = {part(local.tm_sec),  part(local.tm_min), part(local.tm_hour),
                     part(local.tm_mday), part(local.tm_mon), part(local.tm_year + 1900)};
    info.external_fa = plainFile;
    return info;
}

/// Copies a file into the open entry. \return 0, or an error
int copy_content(zipFile archive, std::ifstream& in)
{
    std::array<char, 1 << 16> block;
    while (in) {
        in.read(block.data(), block.size());
        const auto got = static_cast<unsigned>(in.gcount());
        if (got != 0 && zipWriteInFileInZip(archive, block.data(), got) != ZIP_OK) return failed;
    }
    return in.eof() && !in.bad() ? 0 : failed;
}

/// Adds the whole of `in` under `name`. \return 0, or an error
int add_entry(zipFile archive, std::ifstream& in, const std::string& name, bool isHuge)
{
    const zip_fileinfo info = stamped_now();
    if (zipOpenNewFileInZip4_64(archive, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, level, 0,
                                -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0, madeByUnix, utf8Names,
                                isHuge) != ZIP_OK)
        return failed;
    const int copied = copy_content(archive, in);
    return zipCloseFileInZip(archive) == ZIP_OK ? copied : failed;
}

} // namespace

CZLib::~CZLib()
{
    if (archive) zipClose(archive, nullptr);
}

int CZLib::Open(const wchar_t* path, int mode)
{
    if (archive || !path || mode != createNew) return failed;
    broken = false;
    archive = zipOpen64(base::narrow(path).c_str(), APPEND_STATUS_CREATE);
    return archive ? 0 : failed;
}

int CZLib::AddFile(const wchar_t* sourcePath, const wchar_t* entryName)
{
    if (!archive || broken) return failed;
    broken = true;
    if (!sourcePath || !entryName) return failed;
    const std::filesystem::path source = base::narrow(sourcePath);
    const std::string name = base::valid_utf8(base::narrow(entryName));
    std::error_code unknown;
    const std::uintmax_t bytes = std::filesystem::file_size(source, unknown);
    std::ifstream in(source, std::ios::binary);
    if (!in || name.empty() || name.size() > longestName) return failed;
    broken = add_entry(archive, in, name, unknown || bytes >= zip64From) != 0;
    return broken ? failed : 0;
}

int CZLib::Close()
{
    if (!archive) return failed;
    const int result = zipClose(archive, nullptr);
    archive = nullptr;
    return broken ? failed : result;
}
