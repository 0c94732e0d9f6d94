#include "host/peer/trash.h"

#include "base/text.h"
#include "host/peer/path_text.h"
#include "platform/files/paths.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <filesystem>

namespace vldv::host {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t firstByte = 0xDC80, lastByte = 0xDCFF; // how paths keep bytes that are no UTF-8

bool is_byte(wchar_t c) noexcept { return c >= firstByte && c <= lastByte; }

/// "night\xFF.di" as "night%FF.di".
std::wstring spelled_out(const std::wstring& path)
{
    std::wstring out;
    for (const wchar_t c : path)
        out +=
            is_byte(c) ? base::widen(base::formatted("%%%02X", static_cast<unsigned>(c) & 0xFFu)) : std::wstring(1, c);
    return out;
}

} // namespace

bool move_to_trash(const std::wstring& path)
{
    // Without the user's data folder the toolkit finds no trash and makes one beside the file.
    if (!QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))) return false;
    if (std::ranges::none_of(path, is_byte)) return QFile::moveToTrash(text_of_path(path));
    const std::wstring plain = spelled_out(path);
    const fs::path before = platform::to_path(path), after = platform::to_path(plain);
    std::error_code error;
    if (before.parent_path() != after.parent_path() || fs::exists(after, error)) return false;
    fs::rename(before, after, error);
    if (error) return false;
    if (QFile::moveToTrash(text_of_path(plain))) return true;
    fs::rename(after, before, error);
    return false;
}

} // namespace vldv::host
