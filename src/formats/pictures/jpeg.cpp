#include "formats/pictures/jpeg.h"

#include "base/text.h"
#include "formats/pictures/dib.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio> // jpeglib.h needs FILE
#include <jerror.h>
#include <jpeglib.h>
#include <optional>

namespace vldv::formats {

namespace {

constexpr int maxScans = 500; // a few bytes a scan can keep a decoder busy for hours
constexpr unsigned rowsBetweenReports = 256;

/// Every block of 8 x 8 pixels takes a bit at least, or two.
bool is_plausible(std::uint64_t width, std::uint64_t height, std::uint64_t fileBytes)
{
    constexpr std::uint64_t pixelsPerByte = 512, spare = 1u << 20;
    return width * height <= fileBytes * pixelsPerByte + spare;
}

/// The library's decoder. It leaves through longjmp, so `attempt` runs it only over frames without destructors.
class decoder {
public:
    explicit decoder(std::span<const std::byte> bytes)
    {
        info.err = jpeg_std_error(&errors);
        errors.error_exit = onError;
        errors.emit_message = onMessage;
        info.client_data = this;
        attempt([&] {
            jpeg_create_decompress(&info);
            jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
            monitor.progress_monitor = onProgress;
            info.progress = &monitor;
        });
    }
    decoder(const decoder&) = delete;
    decoder& operator=(const decoder&) = delete;
    ~decoder() { jpeg_destroy_decompress(&info); }

    /// False when the library gave up; `reason` tells why.
    template <class Step>
    bool attempt(Step step)
    {
        if (failed) return false;
        if (setjmp(leave)) return false; // a jump's answer may stand in a whole condition only
        step();
        return true;
    }
    /// An error that the library does not know of.
    bool fail(const char* text) noexcept
    {
        failed = true;
        reasonText = text;
        return false;
    }

    std::string reason() const { return std::string("JPEG data: ") + reasonText; }
    bool ended() const noexcept { return endReached; }

    jpeg_decompress_struct info{};

private:
    static decoder& of(j_common_ptr common) noexcept { return *static_cast<decoder*>(common->client_data); }

    [[noreturn]] static void onError(j_common_ptr common)
    {
        decoder& self = of(common);
        common->err->format_message(common, self.message);
        self.fail(self.message);
        std::longjmp(self.leave, 1);
    }
    /// What the library would go on with is an error here, unless no pixel depends on it.
    static void onMessage(j_common_ptr common, int level)
    {
        if (level >= 0) return;
        switch (common->err->msg_code) {
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_ADOBE_XFORM:
        case JWRN_BOGUS_ICC:
        case JWRN_JFIF_MAJOR:
            return;
        case JWRN_JPEG_EOF: // pixels that really miss give another warning
            of(common).endReached = true;
            return;
        default:
            onError(common);
        }
    }
    static void onProgress(j_common_ptr common)
    {
        const auto scan = reinterpret_cast<j_decompress_ptr>(common)->input_scan_number;
        if (scan <= maxScans) return;
        of(common).fail("too many scans");
        std::longjmp(of(common).leave, 1);
    }

    jpeg_error_mgr errors{};
    jpeg_progress_mgr monitor{};
    std::jmp_buf leave{};
    char message[JMSG_LENGTH_MAX]{};
    const char* reasonText = "";
    bool failed = false, endReached = false;
};

/// What the decoder shall give for the colours of the file.
std::optional<J_COLOR_SPACE> output_colours(J_COLOR_SPACE stored)
{
    switch (stored) {
    case JCS_GRAYSCALE:
        return JCS_GRAYSCALE;
    case JCS_RGB:
    case JCS_YCbCr:
        return JCS_EXT_BGR;
    case JCS_CMYK:
    case JCS_YCCK:
        return JCS_CMYK;
    default:
        return std::nullopt;
    }
}

std::uint8_t product(unsigned a, unsigned b) noexcept { return static_cast<std::uint8_t>((a * b + 127) / 255); }

/// Four inks a pixel to blue, green, red. Files of Adobe's programs hold what the paper reflects instead of the ink.
void inks_to_colours(std::span<const std::byte> inks, bool isReflected, std::span<std::byte> out)
{
    const std::byte flip{static_cast<unsigned char>(isReflected ? 0 : 255)};
    const auto level = [&](std::size_t i) { return std::to_integer<unsigned>(inks[i] ^ flip); };
    for (std::size_t x = 0; 4 * x < inks.size(); ++x) {
        const unsigned white = level(4 * x + 3);
        for (std::size_t channel = 0; channel < 3; ++channel)
            out[3 * x + channel] = std::byte{product(level(4 * x + 2 - channel), white)};
    }
}

struct resolution {
    double x = 0.0, y = 0.0; ///< pixels a metre, 0 when unknown
};

resolution resolution_of(const jpeg_decompress_struct& info)
{
    constexpr double perInch = 1.0 / 0.0254, perCentimetre = 100.0;
    const bool isKnown = info.saw_JFIF_marker && (info.density_unit == 1 || info.density_unit == 2);
    const double factor = !isKnown ? 0.0 : info.density_unit == 1 ? perInch : perCentimetre;
    return {info.X_density * factor, info.Y_density * factor};
}

/// Decodes all rows. `inks` is a row of the decoder when that is not one of the picture, else empty.
bool decode_rows(decoder& jpeg, source& file, picture& out, std::span<std::byte> inks)
{
    auto& info = jpeg.info;
    while (info.output_scanline < info.output_height) {
        const unsigned y = info.output_scanline;
        const auto target = row_from_top(out, y);
        auto* row = reinterpret_cast<JSAMPLE*>(inks.empty() ? target.data() : inks.data());
        if (!jpeg.attempt([&] { jpeg_read_scanlines(&info, &row, 1); })) return false;
        if (!inks.empty()) inks_to_colours(inks, info.saw_Adobe_marker, target);
        if (y % rowsBetweenReports != 0) continue;
        if (!file.progress(static_cast<double>(y) / info.output_height)) return jpeg.fail("reading was cancelled");
    }
    // A cut between two scans would only blur the picture, unnoticed.
    if (jpeg.ended() && jpeg_has_multiple_scans(&info)) return jpeg.fail("the last scans are missing");
    return true;
}

base::read_error error_of(const decoder& jpeg) { return {0, jpeg.reason()}; }

} // namespace

base::read_result<recording> read_jpeg(source& file)
{
    std::vector<std::byte> bytes;
    if (!file.readAll(bytes)) return base::read_error{0, "the file cannot be read"};
    decoder jpeg(bytes);
    auto& info = jpeg.info;
    if (!jpeg.attempt([&] { jpeg_read_header(&info, TRUE); })) return error_of(jpeg);
    const auto colours = output_colours(info.jpeg_color_space);
    if (!colours)
        return base::read_error{0, base::formatted("colours: %d components of unknown meaning", info.num_components)};
    const unsigned bitCount = *colours == JCS_GRAYSCALE ? 8 : 24;
    if (!is_dib_size(info.image_width, info.image_height, bitCount) ||
        !is_plausible(info.image_width, info.image_height, bytes.size()))
        return base::read_error{0, base::formatted("width and height: %u x %u is too large for a file of this size",
                                                   info.image_width, info.image_height)};
    info.out_color_space = *colours;
    info.dct_method = JDCT_ISLOW;
    if (!jpeg.attempt([&] { jpeg_start_decompress(&info); })) return error_of(jpeg);

    picture image = make_picture(info.image_width, info.image_height, bitCount,
                                 bitCount == 8 ? grey_palette(256) : std::vector<RGBQUAD>());
    const resolution known = resolution_of(info);
    image.header.biXPelsPerMeter = header_resolution(known.x);
    image.header.biYPelsPerMeter = header_resolution(known.y);
    std::vector<std::byte> inks(*colours == JCS_CMYK ? std::size_t{info.output_width} * 4 : 0);
    if (!decode_rows(jpeg, file, image, inks)) return error_of(jpeg);
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

bool sniff_jpeg(std::span<const std::byte> head)
{
    constexpr std::byte start[] = {std::byte{0xff}, std::byte{0xd8}, std::byte{0xff}};
    return head.size() >= sizeof start && std::equal(std::begin(start), std::end(start), head.begin());
}

} // namespace vldv::formats
