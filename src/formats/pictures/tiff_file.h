#pragma once
#include "formats/pictures/tiff_library.h"
#include "formats/source.h"

#include <cstdarg>
#include <string>
#include <utility>

namespace vldv::formats {

/// A TIFF file that the library reads through a source. What the library says is kept, nothing is printed.
class tiff_file {
public:
    /// Opens the first page; `handle()` is null when that failed. \param memory_ most bytes of a single allocation
    tiff_file(source& file_, std::uint64_t memory_);
    tiff_file(const tiff_file&) = delete;
    tiff_file& operator=(const tiff_file&) = delete;
    ~tiff_file();

    TIFF* handle() const noexcept { return tiff; }
    source& bytes() const noexcept { return file; }
    /// The first complaint since the last `forget`, or empty.
    const std::string& complaint() const noexcept { return text; }
    void forget() noexcept { text.clear(); }
    /// Takes what the library said of a resolution whose value it could not read; empty when there was nothing.
    std::string takeLostResolution() { return std::exchange(lostResolution, {}); }
    /// While pixels are decoded, what a codec only warns of means that it made them up.
    void setStrict(bool isStrict_) noexcept { isStrict = isStrict_; }

private:
    static tiff_file& of(thandle_t handle) noexcept { return *static_cast<tiff_file*>(handle); }
    static tmsize_t onRead(thandle_t handle, void* out, tmsize_t count);
    static toff_t onSeek(thandle_t handle, toff_t offset, int origin);
    static toff_t onSize(thandle_t handle);
    static int onError(TIFF*, void* self, const char* module, const char* format, std::va_list arguments);
    static int onWarning(TIFF*, void* self, const char* module, const char* format, std::va_list arguments);

    source& file;
    std::uint64_t position = 0;
    std::string text, lostResolution;
    bool isStrict = false;
    TIFF* tiff = nullptr;
};

} // namespace vldv::formats
