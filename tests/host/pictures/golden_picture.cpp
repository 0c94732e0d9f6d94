#include "golden_picture.h"

#include "host/paint/QtDC.h"
#include "output/picture_decoders.h"
#include "output/picture_writer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

constexpr int bytesAPixel = 4;
constexpr int textEdge = 1;          // pixels around a text that its glyphs may reach
constexpr double textTolerance = 24; // mean difference of a channel over all texts

test_support::decoded_picture read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    return test_support::decode_png(std::as_bytes(std::span(content)));
}

} // namespace

class golden_picture::recording_surface : public CQtDC {
public:
    explicit recording_surface(std::vector<drawn_text>& texts_) : CQtDC(CSize{96, 96}), texts(texts_) {}

protected:
    void drawText(int left, int baseline, std::wstring_view text) override
    {
        const int top = baseline - fontMetrics().tmAscent;
        texts.push_back({std::wstring(text), CRect(left, top, left + textWidth(text), top + fontMetrics().tmHeight)});
        CQtDC::drawText(left, baseline, text);
    }

private:
    std::vector<drawn_text>& texts;
};

golden_picture::golden_picture(CSize size_, const std::function<void(CDC&)>& draw)
    : size(size_),
      pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * bytesAPixel, std::byte{0xFF})
{
    CBitmap bitmap{.header = {.biWidth = size.cx, .biHeight = size.cy, .biBitCount = 32}, .bits = pixels.data()};
    recording_surface surface(texts);
    surface.SelectObject(&bitmap);
    draw(surface);
}

unsigned golden_picture::at(int x, int y) const
{
    const auto row = static_cast<std::size_t>(size.cy - 1 - y);
    const std::byte* const pixel =
        pixels.data() + (row * static_cast<std::size_t>(size.cx) + static_cast<std::size_t>(x)) * bytesAPixel;
    return std::to_integer<unsigned>(pixel[0]) | std::to_integer<unsigned>(pixel[1]) << 8 |
           std::to_integer<unsigned>(pixel[2]) << 16;
}

CRect golden_picture::textBox(const std::wstring& text) const
{
    for (const drawn_text& each : texts)
        if (each.text == text) return each.box;
    return {};
}

int golden_picture::count(unsigned color, const CRect& part) const
{
    int found = 0;
    for (int y = part.top; y < part.bottom; ++y)
        for (int x = part.left; x < part.right; ++x) found += at(x, y) == color;
    return found;
}

bool golden_picture::isText(int x, int y) const
{
    for (const drawn_text& each : texts) {
        CRect box = each.box;
        box.InflateRect(textEdge, textEdge);
        if (box.PtInRect({x, y})) return true;
    }
    return false;
}

testing::AssertionResult golden_picture::equals(const std::string& name) const
{
    const int width = size.cx, height = size.cy;
    const std::ptrdiff_t stride = std::ptrdiff_t{width} * bytesAPixel;
    const auto write = [&](const fs::path& path) {
        const auto png = output::encode_picture(
            output::picture_format::png, {pixels.data() + stride * (height - 1), width, height, -stride, bytesAPixel});
        output::save_file_atomically(path, *png);
    };
    const std::string file = name + ".png";
    if (const char* const folder = std::getenv("VLDV_RENEW_PICTURES")) write(fs::path(folder) / file);
    const test_support::decoded_picture golden = read(fs::path(VLDV_TEST_DATA) / file);
    std::string reason;
    if (golden.width != width || golden.height != height)
        reason = "size " + std::to_string(golden.width) + " x " + std::to_string(golden.height);
    double textDifference = 0.0, textPixels = 0.0;
    for (int y = 0; reason.empty() && y < height; ++y)
        for (int x = 0; reason.empty() && x < width; ++x) {
            const std::uint8_t* const wanted = golden.pixel(x, y);
            const unsigned found = at(x, y);
            if (isText(x, y)) {
                ++textPixels;
                for (int channel = 0; channel < 3; ++channel)
                    textDifference +=
                        std::abs(static_cast<int>(found >> (16 - 8 * channel) & 0xFF) - wanted[channel]) / 3.0;
            } else if (found != (unsigned{wanted[0]} << 16 | unsigned{wanted[1]} << 8 | wanted[2])) {
                reason = "pixel " + std::to_string(x) + ", " + std::to_string(y);
            }
        }
    if (reason.empty() && textDifference > textTolerance * textPixels) reason = "the texts";
    if (reason.empty()) return testing::AssertionSuccess();
    const fs::path seen = fs::path(testing::TempDir()) / file;
    write(seen);
    return testing::AssertionFailure() << name << " differs in " << reason << "; drawn was " << seen;
}
