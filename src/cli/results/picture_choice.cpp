#include "cli/results/picture_choice.h"

#include "base/text.h"
#include "cli/results/curve_source.h"
#include "curves/figures/opening_part.h"
#include "document/measuring_image.h"

#include <optional>

namespace vldv::cli {

namespace {

/// Numbers of a point of --points; 0 without any.
unsigned coordinates(const picture_options& options)
{
    return options.points.empty() ? 0 : static_cast<unsigned>(parse_points(options.points)->front().size());
}

/// What the window on an image opens as, of those that are drawn here. What another image is measured against has no
/// window of its own.
std::optional<picture_view> window_of(const CStorageDoc& document, unsigned image, bool isNamed)
{
    switch (document.getImage(image).get_dimensions_number()) {
    case 1:
        if (document::measuring_image(document, image)) return picture_view::parametric;
        if (document::measures_another(document, image) && !isNamed) return {};
        return picture_view::section;
    case 2:
        return picture_view::surface;
    default:
        return {};
    }
}

std::optional<picture_view> view_of(const CStorageDoc& document, unsigned image, const picture_options& options)
{
    if (!document.isImageOk(image)) return {};
    const unsigned dimensions = document.getImage(image).get_dimensions_number(), numbers = coordinates(options);
    const auto when = [&](bool fits) { return fits ? std::optional(options.view) : std::nullopt; };
    switch (options.view) {
    case picture_view::automatic:
        return window_of(document, image, options.image >= 0);
    case picture_view::surface:
    case picture_view::fourier:
    case picture_view::features:
        return when(dimensions == 2);
    case picture_view::histogram:
        return when(dimensions <= 2);
    case picture_view::parametric:
        return when(dimensions == 1 && document::measuring_image(document, image).has_value());
    default:
        return when(dimensions == (numbers ? numbers : 1));
    }
}

/// What an image is not.
std::string why_none(const CStorageDoc& document, unsigned image, const picture_options& options)
{
    if (!document.isImageOk(image)) return base::formatted("image %u holds no samples", image);
    const unsigned dimensions = document.getImage(image).get_dimensions_number();
    switch (options.view) {
    case picture_view::automatic:
        return base::formatted("image %u is neither surface nor curve", image);
    case picture_view::surface:
    case picture_view::fourier:
    case picture_view::features:
        return base::formatted("image %u is no surface", image);
    case picture_view::histogram:
        return base::formatted("image %u is neither surface nor curve", image);
    case picture_view::parametric:
        return base::formatted("image %u is no curve that is measured against another image", image);
    default:
        return base::formatted(options.points.empty()
                                   ? "image %u is no curve; surfaces and volumes need --points"
                                   : "image %u has %u dimensions; --points must have as many numbers a point",
                               image, dimensions);
    }
}

/// What a whole document lacks.
const char* what_is_missing(const picture_options& options)
{
    if (options.image >= 0 || options.sub >= 0) return "there is no such image or sub-image";
    switch (options.view) {
    case picture_view::automatic:
    case picture_view::histogram:
        return "there is no surface and no curve to draw";
    case picture_view::surface:
    case picture_view::fourier:
    case picture_view::features:
        return "there is no surface to draw";
    case picture_view::parametric:
        return "there is no curve that is measured against another image";
    default:
        return options.points.empty() ? "there is no curve; surfaces and volumes need --points"
                                      : "there is no image with as many dimensions as the points of --points have "
                                        "numbers";
    }
}

} // namespace

std::vector<picture_number> chosen_pictures(const CStorageDoc& document, const picture_options& options,
                                            std::string& skipped)
{
    std::vector<picture_number> found;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (options.image >= 0 && image != static_cast<unsigned>(options.image)) continue;
        const std::optional<picture_view> view = view_of(document, image, options);
        if (!view) {
            if (options.image >= 0) skipped = why_none(document, image, options);
            continue;
        }
        const unsigned count = document.getSubImagesNumber(image);
        // All curves stand in one window.
        const bool isEachApart = shows_heights(*view);
        const unsigned opening = isEachApart ? 0 : curves::opening_part(document.getImage(image));
        const unsigned first = options.sub >= 0 ? static_cast<unsigned>(options.sub) : opening;
        const unsigned end = options.sub >= 0 || !isEachApart ? first + 1 : count;
        for (unsigned sub = first; sub < std::min(end, count); ++sub) found.push_back({image, sub, *view});
    }
    if (found.empty() && skipped.empty()) skipped = what_is_missing(options);
    return found;
}

} // namespace vldv::cli
