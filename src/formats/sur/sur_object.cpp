#include "formats/sur/sur_object.h"

#include "formats/shared/fixed_text.h"
#include "formats/shared/text_units.h"

#include <cmath>

namespace vldv::formats {

namespace {

bool is_known_kind(std::int16_t kind) noexcept
{
    switch (sur_kind{kind}) {
    case sur_kind::profile:
    case sur_kind::surface:
    case sur_kind::binary_image:
    case sur_kind::profile_series:
    case sur_kind::surface_series:
    case sur_kind::disc:
    case sur_kind::multilayer_profile:
    case sur_kind::multilayer_surface:
    case sur_kind::second_disc:
    case sur_kind::intensity_image:
    case sur_kind::intensity_surface:
    case sur_kind::rgb_image:
    case sur_kind::rgb_surface:
    case sur_kind::rgb_intensity_surface:
    case sur_kind::contour:
    case sur_kind::rgb_image_series:
    case sur_kind::spectrum:
    case sur_kind::spectral_map:
        return true;
    }
    return false;
}

/// Reads the fields in their order. \return the points that the header counts
std::uint32_t read_fields(base::byte_reader& in, sur_object& object, std::int16_t& kind)
{
    const auto units = [&](std::size_t width) { return normal_unit(fixed_text(in, width)); };
    in.seek(14);
    const std::int16_t objects = in.i16();
    object.objects = objects > 0 ? static_cast<unsigned>(objects) : 1;
    in.skip(2); // version
    kind = in.i16();
    object.name = fixed_text(in, 30);
    object.user = fixed_text(in, 30);
    in.skip(2); // channels of a colour image, or a material
    object.acquisition = in.i16();
    in.skip(2);
    object.hasVoids = in.i16() == 1;
    in.seek(94);
    const std::int32_t pointValues = in.i32();
    object.sampleBits = in.u16();
    object.voidValue = std::int64_t{in.i32()} - 2; // just below the lowest sample
    in.skip(4);
    const std::int32_t width = in.i32(), height = in.i32();
    const std::uint32_t points = in.u32();
    object.width = width > 0 ? static_cast<unsigned>(width) : 0;
    object.height = height > 0 ? static_cast<unsigned>(height) : 0;
    object.pointValues = pointValues > 0 ? static_cast<unsigned>(pointValues) : 1;
    const double xStep = in.f32(), yStep = in.f32();
    object.zStep = in.f32();
    object.xName = fixed_text(in, 16);
    object.yName = fixed_text(in, 16);
    object.zName = fixed_text(in, 16);
    const std::string xUnits = units(16), yUnits = units(16);
    object.zUnits = units(16);
    in.seek(306);
    for (int& part : object.time) part = in.i16();
    in.seek(320);
    object.seconds = in.f32();
    in.seek(334);
    object.commentBytes = in.u16();
    object.privateBytes = in.u16();
    in.seek(466);
    const double xOffset = in.f32(), yOffset = in.f32();
    object.zOffset = in.f32();
    const double spectralStep = in.f32(), spectralOffset = in.f32();
    object.spectralName = fixed_text(in, 13);
    object.x = VLAxis(xOffset, xStep, xUnits.c_str());
    object.y = VLAxis(yOffset, yStep, yUnits.c_str());
    object.spectral = VLAxis(spectralOffset, spectralStep, units(13).c_str());
    return points;
}

std::string check(const sur_object& object, std::uint32_t points)
{
    constexpr std::uint64_t maxSide = 65536;
    if (object.sampleBits != 16 && object.sampleBits != 32)
        return std::to_string(object.sampleBits) + " bits per value; only 16 and 32 can be";
    if (object.width == 0 || object.height == 0) return "points per line or number of lines is not above 0";
    if (object.height > maxSide || (object.width > maxSide && !object.isCurve()))
        return "points per line or number of lines is above 65536";
    if (std::uint64_t{object.width} * object.height != points)
        return "the number of points, " + std::to_string(points) + ", is not points per line times lines, " +
               std::to_string(object.width) + " x " + std::to_string(object.height);
    return {};
}

} // namespace

bool sur_object::isCurve() const noexcept
{
    if (isMap()) return false;
    return kind == sur_kind::profile || kind == sur_kind::profile_series || kind == sur_kind::multilayer_profile ||
           kind == sur_kind::spectrum;
}

bool is_sur_header(std::span<const std::byte> bytes) noexcept
{
    const std::string_view text = as_text(bytes);
    return text.starts_with(surMagic) || text.starts_with(surPackedMagic);
}

base::read_result<sur_object> parse_sur_object(std::span<const std::byte> header)
{
    if (!is_sur_header(header)) return base::read_error{0, "not a Digital Surf header"};
    base::byte_reader in(header);
    sur_object object;
    object.isPacked = in.tag(surPackedMagic);
    std::int16_t kind = 0;
    const std::uint32_t points = read_fields(in, object, kind);
    if (in.failed()) return base::read_error{header.size(), "header cut short"};
    if (!is_known_kind(kind))
        return base::read_error{surKindAt, "object type " + std::to_string(kind) + " has no layout that is known"};
    object.kind = sur_kind{kind};
    if (std::string reason = check(object, points); !reason.empty()) return base::read_error{0, reason};
    return object;
}

} // namespace vldv::formats
