#pragma once
#include <csetjmp>
#include <cstddef>
#include <png.h>
#include <span>
#include <string>

namespace vldv::formats {

/// The library's decoder over bytes in memory. It reports errors by a jump, so `attempt` runs it only over frames
/// without destructors.
class png_decoder {
public:
    /// \param bytes_  must outlive the decoder
    explicit png_decoder(std::span<const std::byte> bytes_);
    png_decoder(const png_decoder&) = delete;
    png_decoder& operator=(const png_decoder&) = delete;
    ~png_decoder() { png_destroy_read_struct(&png, &info, nullptr); }

    /// False when the library gave up, now or before; `reason` tells why.
    template <class Step>
    bool attempt(Step step)
    {
        if (failed) return false;
        if (setjmp(leave)) return false; // a jump's answer may stand in a whole condition only
        step(png, info);
        return true;
    }
    /// An error that the library does not know of.
    bool fail(const char* text) noexcept;

    std::string reason() const { return std::string("PNG data: ") + message; }
    png_structp handle() const noexcept { return png; }
    png_infop header() const noexcept { return info; }

private:
    [[noreturn]] static void onError(png_structp png_, png_const_charp text);
    static void onWarning(png_structp, png_const_charp) {}
    static void onRead(png_structp png_, png_bytep out, std::size_t size);

    std::span<const std::byte> rest; ///< what was not read yet
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::jmp_buf leave{};
    char message[256] = "not enough memory";
    bool failed = false;
};

} // namespace vldv::formats
