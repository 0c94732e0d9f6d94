#include "view/scale/PaletteBar.h"

#include "base/streams/byte_reader.h"

#include <bit>
#include <cmath>
#include <concepts>

using namespace vldv;

namespace {

constexpr int maxSide = 1 << 14; // pixels; no screen is as large

void append(std::vector<std::byte>& out, std::integral auto number)
{
    for (std::size_t i = 0; i < sizeof number; ++i) out.push_back(static_cast<std::byte>(number >> 8 * i));
}

void append(std::vector<std::byte>& out, double number) { append(out, std::bit_cast<std::uint64_t>(number)); }

bool is_side(int side) { return side > 0 && side <= maxSide; }

} // namespace

CSize CPaletteBar::OnCalculateSize(CSize offered, bool isHorizontal) const
{
    const CSize own = strip.GetSize();
    return isHorizontal ? CSize{own.cx, offered.cy} : CSize{offered.cx, own.cy};
}

void CPaletteBar::OnChangeParentWnd(bool isToolbar)
{
    if (isToolbar) strip.MakeStatic();
}

void CPaletteBar::CopyFrom(const CPaletteBar& source)
{
    const CScale& from = source.strip;
    strip.SetPaletteId(from.GetPaletteId());
    strip.SetDirection(from.GetDirection());
    strip.SetAutoScaling(from.GetAutoScaling());
    strip.setFixedSize(from.getFixedSize());
    strip.setFixedStart(from.getFixedStart());
    strip.setRelativeMeanOffset(from.getRelativeMeanOffset());
    strip.setFixedUnits(from.getFixedUnits());
}

std::vector<std::byte> CPaletteBar::Serialize() const
{
    // Little-endian: width, height, palette, direction and mode of 32 bits each, then size, start and offset as
    // doubles, then the length of the units and their bytes.
    const CSize size = strip.GetSize();
    std::vector<std::byte> out;
    for (const int number : {size.cx, size.cy, strip.GetPaletteId(), int{strip.GetDirection()}, strip.GetAutoScaling()})
        append(out, number);
    for (const double number : {strip.getFixedSize(), strip.getFixedStart(), strip.getRelativeMeanOffset()})
        append(out, number);
    const std::string_view units = strip.getFixedUnits();
    append(out, static_cast<std::int32_t>(units.size()));
    for (const char c : units) out.push_back(static_cast<std::byte>(c));
    return out;
}

bool CPaletteBar::Serialize(std::span<const std::byte> bytes)
{
    base::byte_reader in(bytes);
    const int keptLength = in.i32(), keptWidth = in.i32(), palette = in.i32(), direction = in.i32(), mode = in.i32();
    const double size = in.f64(), start = in.f64(), offset = in.f64();
    const auto units = in.take(in.u32());
    const bool isUsable = !in.failed() && is_side(keptLength) && is_side(keptWidth) &&
                          (direction == tdHorizontal || direction == tdVertical) && mode >= view::fixedScale &&
                          mode <= view::perLinePlanefit && std::isfinite(size) && std::isfinite(start) &&
                          std::isfinite(offset);
    if (!isUsable) return false;
    strip.SetDimensions(keptLength, keptWidth);
    strip.SetPaletteId(palette);
    strip.SetDirection(static_cast<tdTileDirection>(direction));
    strip.SetAutoScaling(mode);
    strip.setFixedSize(size);
    strip.setFixedStart(start);
    strip.setRelativeMeanOffset(offset);
    strip.setFixedUnits(std::string(reinterpret_cast<const char*>(units.data()), units.size()).c_str());
    return true;
}
