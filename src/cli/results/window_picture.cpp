#include "cli/results/legend_picture.h"

#include "cli/choice/image_part.h"
#include "cli/choice/palette_choice.h"
#include "cli/pictures/surface_window.h"
#include "document/StorageDoc.h"
#include "view/Scale.h"

#include <stdexcept>

namespace vldv::cli {

namespace {

/// What the command line asks for, of an image of this size in samples.
surface_window asked_window(const surface_number& which, const picture_options& options, CSize image)
{
    surface_window window;
    window.image = which.image;
    window.sub = which.sub;
    window.setUpScale = [&options](CScale& scale) { set_up_scale(scale, options); };
    if (options.mode == view::fixedScale) window.scaling = options.absolute ? "Absolute" : "Relative";
    window.isHighlighted = options.highlight;
    window.isCompact = options.legend == "compact";
    if (!options.roi.empty()) window.part = part_of_image("--roi", *parse_rectangle(options.roi), image);
    if (const auto size = parse_picture_size(options.size)) window.size = CSize{size->width, size->height};
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

std::string draw_with_legend(CStorageDoc& document, const surface_number& which, const picture_options& options,
                             VLDIBImage& picture)
{
    if (document.getImage(which.image).array_type() != SPM_ARRAY_INT16) {
        document.getImage(which.image).convert_stream(SPM_ARRAY_INT16);
        document.revalidateImage(which.image);
    }
    const SPMDataStream& stream = document.getImage(which.image);
    if (stream.array_type() != SPM_ARRAY_INT16) return "its samples have no type";
    const CSize image{static_cast<int>(stream.get_dimension(0).length),
                      static_cast<int>(stream.get_dimension(1).length)};
    return draw_surface_window(document, asked_window(which, options, image), picture);
}

} // namespace vldv::cli
