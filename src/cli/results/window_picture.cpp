#include "cli/results/window_picture.h"

#include "cli/choice/image_part.h"
#include "cli/choice/palette_choice.h"
#include "cli/choice/view_settings.h"
#include "cli/pictures/curve_window.h"
#include "cli/pictures/surface_window.h"
#include "cli/results/curve_source.h"
#include "document/measuring_image.h"
#include "view/Scale.h"

#include <stdexcept>

namespace vldv::cli {

namespace {

std::optional<CSize> asked_size(const picture_options& options)
{
    const auto size = parse_picture_size(options.size);
    return size ? std::optional(CSize{size->width, size->height}) : std::nullopt;
}

std::function<std::string(CDCView&)> settings_of(const picture_options& options)
{
    return [&options](CDCView& view) { return apply_settings(view, options.settings); };
}

/// What the command line asks for, of an image of this size in samples.
surface_window asked_surface(const picture_number& which, const picture_options& options, CSize image)
{
    surface_window window;
    window.image = which.image;
    window.sub = which.sub;
    window.setUpScale = [&options](CScale& scale) { set_up_scale(scale, options); };
    if (options.mode == view::fixedScale) window.scaling = options.absolute ? "Absolute" : "Relative";
    window.isHighlighted = options.highlight;
    window.isCompact = options.legend == "compact";
    if (!options.roi.empty()) window.part = part_of_image("--roi", *parse_rectangle(options.roi), image);
    window.size = asked_size(options);
    window.setOptions = settings_of(options);
    return window;
}

curve_window asked_curves(const CStorageDoc& document, const picture_number& which, const picture_options& options)
{
    curve_window window;
    window.image = which.image;
    window.sub = which.sub;
    if (which.view == picture_view::spectrum) window.kind = curve_view::spectrum;
    if (which.view == picture_view::histogram) window.kind = curve_view::histogram;
    if (which.view == picture_view::fourier) window.kind = curve_view::fourier;
    if (which.view == picture_view::features) window.kind = curve_view::features;
    if (which.view == picture_view::parametric) {
        window.kind = curve_view::parametric;
        window.positions = document::measuring_image(document, which.image).value();
    }
    if (!options.points.empty()) window.points = parse_points(options.points).value();
    window.showsForceLines = options.statistics;
    if (!options.legend.empty()) window.legend = options.legend == "none" ? curve_legend::never : curve_legend::always;
    window.size = asked_size(options);
    window.setOptions = settings_of(options);
    window.setUpScale = [&options](CScale& scale) { set_up_scale(scale, options); };
    return window;
}

} // namespace

void set_up_scale(CScale& scale, const picture_options& options)
{
    if (const std::string problem = choose_palette(scale, options.palette); !problem.empty())
        throw std::runtime_error(problem);
    scale.SetAutoScaling(options.mode);
    scale.setInverse(options.inverse);
    if (options.fixed.empty()) return;
    const auto window = parse_fixed_window(options.fixed);
    scale.setFixedUnits(window->units.c_str());
    scale.setFixedSize(window->size);
    scale.setFixedStart(window->start);
    scale.setRelativeMeanOffset(window->start);
    scale.setDisableScaleCheck(true); // the user said which values to show
}

std::string draw_window(CStorageDoc& document, const picture_number& which, const picture_options& options,
                        const drawing_user& use)
{
    if (!shows_heights(which.view)) return draw_curve_window(document, asked_curves(document, which, options), use);
    if (document.getImage(which.image).array_type() != SPM_ARRAY_INT16) {
        document.getImage(which.image).convert_stream(SPM_ARRAY_INT16);
        document.revalidateImage(which.image);
    }
    const SPMDataStream& stream = document.getImage(which.image);
    if (stream.array_type() != SPM_ARRAY_INT16) return "its samples have no type";
    if (which.view != picture_view::surface)
        return draw_curve_window(document, asked_curves(document, which, options), use);
    const CSize image{static_cast<int>(stream.get_dimension(0).length),
                      static_cast<int>(stream.get_dimension(1).length)};
    return draw_surface_window(document, asked_surface(which, options, image), use);
}

} // namespace vldv::cli
