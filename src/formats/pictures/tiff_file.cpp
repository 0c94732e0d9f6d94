#include "formats/pictures/tiff_file.h"

#include "base/text.h"

#include <algorithm>
#include <cstdio> // SEEK_SET
#include <new>
#include <string_view>

namespace vldv::formats {

tiff_file::tiff_file(source& file_, std::uint64_t memory_) : file(file_)
{
    if (text = libtiff().failure; !text.empty()) return;
    TIFFOpenOptions* options = libtiff().allocOptions();
    if (!options) throw std::bad_alloc();
    libtiff().setMostMemory(options, static_cast<tmsize_t>(memory_));
    libtiff().setErrorHandler(options, onError, this);
    libtiff().setWarningHandler(options, onWarning, this);
    // "m": the source is no memory that could be mapped.
    tiff = libtiff().open(
        "TIFF", "rm", this, onRead, [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; }, onSeek,
        [](thandle_t) { return 0; }, onSize, nullptr, nullptr, options);
    libtiff().freeOptions(options);
}

tiff_file::~tiff_file()
{
    if (tiff) libtiff().close(tiff);
}

// These are called through frames of C: nothing may be thrown.

tmsize_t tiff_file::onRead(thandle_t handle, void* out, tmsize_t count)
try {
    tiff_file& self = of(handle);
    const std::uint64_t size = self.file.size();
    if (count <= 0 || self.position >= size) return 0;
    const auto there = static_cast<std::size_t>(std::min(static_cast<std::uint64_t>(count), size - self.position));
    if (!self.file.read(self.position, {static_cast<std::byte*>(out), there})) return 0;
    self.position += there;
    return static_cast<tmsize_t>(there);
} catch (...) {
    return 0; // the library reports a read error
}

toff_t tiff_file::onSeek(thandle_t handle, toff_t offset, int origin)
{
    tiff_file& self = of(handle);
    const std::uint64_t start = origin == SEEK_CUR ? self.position : origin == SEEK_END ? self.file.size() : 0;
    self.position = start + offset; // a negative offset comes as its complement
    return self.position;
}

toff_t tiff_file::onSize(thandle_t handle) { return of(handle).file.size(); }

int tiff_file::onError(TIFF*, void* self_, const char*, const char* format, std::va_list arguments)
try {
    tiff_file& self = *static_cast<tiff_file*>(self_);
    if (self.text.empty()) self.text = base::valid_utf8(base::formatted_v(format, arguments));
    return 1;
} catch (...) {
    return 1; // the failure itself is reported all the same
}

int tiff_file::onWarning(TIFF* tiff, void* self_, const char* module, const char* format, std::va_list arguments)
try {
    tiff_file& self = *static_cast<tiff_file*>(self_);
    const std::string_view name = module ? module : "";
    const bool makesUpPixels = name.starts_with("Fax") || name.starts_with("JPEGLib");
    if (self.isStrict && makesUpPixels) return onError(tiff, self_, module, format, arguments);
    const std::string said = base::valid_utf8(base::formatted_v(format, arguments));
    if (said.find("Resolution\"") != std::string::npos) self.lostResolution = said;
    return 1;
} catch (...) {
    return 1; // a page without a resolution counts in pixels
}

} // namespace vldv::formats
