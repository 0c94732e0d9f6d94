#include "golden_picture.h"

#include "base/text.h"
#include "output/picture_decoders.h"
#include "output/picture_writer.h"
#include "paint/QtDC.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

constexpr int bytesAPixel = 4;
constexpr int textEdge = 1;          // pixels around a text that its glyphs may reach
constexpr double textTolerance = 30; // mean difference of a channel over a text

test_support::decoded_picture read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    return test_support::decode_png(std::as_bytes(std::span(content)));
}

} // namespace

class golden_picture::recording_surface : public paint::CQtDC {
public:
    explicit recording_surface(std::vector<drawn_text>& texts_) : paint::CQtDC(CSize{96, 96}), texts(texts_) {}

protected:
    void drawText(int left, int baseline, std::wstring_view text) override
    {
        if (isRim) return paint::CQtDC::drawText(left, baseline, text);
        const int top = baseline - fontMetrics().tmAscent;
        texts.push_back({std::wstring(text), CRect(left, top, left + textWidth(text), top + fontMetrics().tmHeight)});
        paint::CQtDC::drawText(left, baseline, text);
    }

    void drawTextRim(int left, int baseline, std::wstring_view text) override
    {
        isRim = true;
        paint::CQtDC::drawTextRim(left, baseline, text);
        isRim = false;
    }

private:
    std::vector<drawn_text>& texts;
    bool isRim = false; ///< around a text that comes next
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

std::string golden_picture::difference(const test_support::decoded_picture& golden) const
{
    if (golden.width != size.cx || golden.height != size.cy)
        return base::formatted("size: %d x %d was expected", golden.width, golden.height);
    const auto differs = [&](int x, int y) {
        const std::uint8_t* const wanted = golden.pixel(x, y);
        return at(x, y) != (unsigned{wanted[0]} << 16 | unsigned{wanted[1]} << 8 | wanted[2]);
    };
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x)
            if (differs(x, y) && !isText(x, y)) return base::formatted("pixel %d, %d", x, y);
    for (const drawn_text& each : texts) {
        CRect box;
        if (!box.IntersectRect(each.box, CRect({0, 0}, size))) continue;
        double sum = 0.0;
        for (int y = box.top; y < box.bottom; ++y)
            for (int x = box.left; x < box.right; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    sum +=
                        std::abs(static_cast<int>(at(x, y) >> (16 - 8 * channel) & 0xFF) - golden.pixel(x, y)[channel]);
        if (sum > textTolerance * 3.0 * box.Width() * box.Height()) return "the text " + base::narrow(each.text);
    }
    return {};
}

testing::AssertionResult golden_picture::equals(const std::string& name) const
{
    const std::ptrdiff_t stride = std::ptrdiff_t{size.cx} * bytesAPixel;
    const auto write = [&](const fs::path& path) {
        const auto png = output::encode_picture(output::picture_format::png, {pixels.data() + stride * (size.cy - 1),
                                                                              size.cx, size.cy, -stride, bytesAPixel});
        output::save_file_atomically(path, *png);
    };
    const std::string file = name + ".png";
    if (const char* const folder = std::getenv("VLDV_RENEW_PICTURES")) write(fs::path(folder) / file);
    const std::string found = difference(read(fs::path(VLDV_TEST_DATA) / file));
    if (found.empty()) return testing::AssertionSuccess();
    const fs::path seen = fs::path(testing::TempDir()) / file;
    write(seen);
    return testing::AssertionFailure() << name << " differs in " << found << "; drawn was " << seen;
}
