#include "surface/views/stored_palette.h"

#include "base/SPMVar.h"
#include "base/text.h"
#include "view/Scale.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::surface {

namespace {

constexpr std::size_t longestUnits = 100; // bytes
constexpr std::size_t entryDigits = 8;    // of a colour in hexadecimal
constexpr std::size_t mostColors = 65536; // far above any palette

/// An array of colours that is its own text.
SPMVar color_array(std::size_t count)
{
    SPMVar array;
    array.Init(("palette,array," + std::to_string(count) + ",uint32").c_str());
    return array;
}

std::string text_of(const color_table& colors)
{
    SPMVar array = color_array(colors.size());
    array.set_array(colors.data(), static_cast<unsigned>(colors.size()), 0);
    return array.as_string().c_str();
}

std::optional<color_table> colors_of(std::string_view text)
{
    text = base::trimmed(text);
    const std::size_t count = text.size() / entryDigits;
    if (count == 0 || count > mostColors || text.size() % entryDigits != 0) return std::nullopt;
    SPMVar array = color_array(count);
    if (!array.is_array() || !array.from_string(std::string(text).c_str()) ||
        array.data_size() != count * sizeof(colorEntry))
        return std::nullopt;
    color_table colors(count);
    std::memcpy(colors.data(), array.array_data(), array.data_size());
    return colors;
}

/// Takes the field up to the next comma off the front.
std::optional<std::string_view> next_field(std::string_view& text)
{
    if (text.data() == nullptr) return std::nullopt;
    const std::size_t end = text.find(',');
    const std::string_view field = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    return field;
}

std::optional<double> finite(std::optional<std::string_view> field)
{
    const auto value = field ? base::whole_number(*field) : std::nullopt;
    return value && std::isfinite(*value) ? value : std::nullopt;
}

} // namespace

std::string compose_palette(const stored_palette& palette)
{
    std::string text = std::to_string(palette.paletteId) + "," + (palette.inverse ? "1" : "0") + "," +
                       base::shortest(palette.fixedSize) + "," + base::shortest(palette.fixedStart) + "," +
                       palette.units;
    if (palette.paletteId != view::customPalette || palette.custom.empty()) return text;
    // Position i of n of the scale, as it draws: n is one less than the number of colours, so that none is lost.
    const auto last = static_cast<int>(palette.custom.size()) - 1;
    color_table shown;
    for (int i = 0; i <= last; ++i) shown.push_back(view::color_at(palette.custom, palette.inverse, i, last));
    return text + "," + text_of(shown);
}

std::optional<stored_palette> parse_palette(std::string_view text)
{
    const auto id = next_field(text), direction = next_field(text);
    const auto size = finite(next_field(text)), start = finite(next_field(text));
    const auto units = next_field(text);
    const auto number = id ? base::whole_integer(*id) : std::nullopt;
    const auto flag = direction ? base::whole_integer(*direction) : std::nullopt;
    if (!number || !flag || !size || !start || !units || units->empty() || units->size() > longestUnits)
        return std::nullopt;
    stored_palette palette{
        static_cast<int>(std::clamp(*number, 0LL, 1LL << 20)), *flag != 0, *size, *start, std::string(*units), {}};
    if (palette.paletteId != view::customPalette) return palette;
    auto colors = colors_of(text);
    if (!colors) return std::nullopt;
    if (palette.inverse) std::ranges::reverse(*colors);
    palette.custom = std::move(*colors);
    return palette;
}

stored_palette palette_of(const view::scale_state& scale, const color_table& custom)
{
    const bool isCustom = scale.paletteId == view::customPalette;
    return {scale.paletteId,  scale.inverse,    scale.fixedSize,
            scale.fixedStart, scale.fixedUnits, isCustom ? custom : color_table{}};
}

bool apply_palette(std::string_view text, CScale& own, CScale* followed)
{
    const auto palette = parse_palette(text);
    if (!palette) return false;
    if (!palette->custom.empty()) {
        const std::vector<unsigned long> colors(palette->custom.begin(), palette->custom.end());
        own.SetCustomPalette(colors.data(), static_cast<int>(colors.size())); // of all scales
    }
    for (CScale* const scale : {&own, followed}) {
        if (!scale) continue;
        scale->setInverse(palette->inverse);
        scale->setFixedSize(palette->fixedSize);
        scale->setFixedStart(palette->fixedStart);
        scale->setFixedUnits(palette->units.c_str());
        scale->SetPaletteId(palette->paletteId);
    }
    return true;
}

} // namespace vldv::surface
