// vldv render: pictures of surfaces, the right way up.
#include "base/text.h"
#include "cli/choice/image_part.h"
#include "cli/choice/number_limits.h"
#include "cli/choice/palette_choice.h"
#include "cli/choice/text_check.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/output/failure_text.h"
#include "cli/output/output_names.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "cli/results/legend_picture.h"
#include "cli/session.h"
#include "document/samples/rising_heights.h"
#include "document/samples/unmeasured_samples.h"
#include "output/picture_writer.h"
#include "platform/files/paths.h"
#include "view/Scale.h"
#include "view/scale/render.h"
#include "view/scale/render_step.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <utility>

namespace vldv::cli {

namespace {

namespace fs = std::filesystem;

/// The surfaces that were asked for; `skipped` tells what was asked for and is none.
std::vector<surface_number> surfaces(const CStorageDoc& document, const picture_options& options, std::string& skipped)
{
    std::vector<surface_number> found;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (options.image >= 0 && image != static_cast<unsigned>(options.image)) continue;
        if (document.getImage(image).get_dimensions_number() != 2 || !document.isImageOk(image)) {
            if (options.image >= 0) skipped = base::formatted("image %u is no surface", image);
            continue;
        }
        for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub)
            if (options.sub < 0 || sub == static_cast<unsigned>(options.sub)) found.push_back({image, sub});
    }
    if (found.empty() && skipped.empty() && (options.image >= 0 || options.sub >= 0))
        skipped = "there is no such image or sub-image";
    return found;
}

/// The pixels of a surface: row 0 is the lowest of the surface and the last of the picture.
struct plain_picture {
    std::vector<std::byte> pixels;
    int width = 0, height = 0;
    output::pixel_view view() const
    {
        const std::ptrdiff_t stride = std::ptrdiff_t{width} * 4;
        return {pixels.data() + stride * (height - 1), width, height, -stride, 4};
    }
};

/// As a window draws them: in another size the samples are reduced, not their colours, and the range is that of all
/// that were measured.
void draw_heights(const std::int16_t* samples, CSize image, const VLAxis& axis,
                  std::span<const primitives::sample_run> unmeasured, const picture_options& options,
                  plain_picture& picture)
{
    const auto asked = parse_picture_size(options.size);
    const CSize size = asked ? CSize{asked->width, asked->height} : image;
    const CRect whole({0, 0}, image);
    const bool hasRegion = !options.roi.empty();
    const CRect part = hasRegion ? part_of_image("--roi", *parse_rectangle(options.roi), image) : whole;
    RECT region = view::shown_part(part, whole, size);
    view::window_fitter fitter;
    const view::fitted_window shown = fitter.fit(samples, image.cx, whole, size);
    const primitives::height_range range =
        hasRegion || !unmeasured.empty() ? view::range_keeper().of(samples, image.cx, part, unmeasured) : shown.range;
    picture.width = size.cx;
    picture.height = size.cy;
    picture.pixels.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * 4);
    CScale scale;
    set_up_scale(scale, options);
    scale.DrawImage({.bits = picture.pixels.data(),
                     .source = shown.samples,
                     .sourceStep = shown.step,
                     .size = {size.cx, size.cy},
                     .zAxis = &axis,
                     .absolute = options.absolute,
                     .highlight = options.highlight,
                     .roi = hasRegion ? &region : nullptr,
                     .rgb32 = true,
                     .range = &range});
}

/// \return empty, or why there is no picture
std::string draw_plain(const CStorageDoc& document, const surface_number& which, const picture_options& options,
                       plain_picture& picture)
{
    SPMDataStream copy;
    const SPMDataStream* stream = &document.getImage(which.image);
    if (stream->array_type() != SPM_ARRAY_INT16) {
        copy = *stream;
        copy.convert_stream(SPM_ARRAY_INT16);
        stream = &copy;
    }
    if (stream->array_type() != SPM_ARRAY_INT16) return "its samples have no type";
    const unsigned columns = stream->get_dimension(0).length, rows = stream->get_dimension(1).length;
    constexpr unsigned maxSide = 32768;
    if (columns == 0 || rows == 0 || columns > maxSide || rows > maxSide) return "its size cannot be drawn";
    const auto* samples = static_cast<const short*>(stream->array_data()) + std::size_t{columns} * rows * which.sub;
    const document::rising_heights heights({samples, std::size_t{columns} * rows}, stream->values.get_axis(0));
    const CSize size{static_cast<int>(columns), static_cast<int>(rows)};
    const auto unmeasured = document::unmeasured_samples(document, which.image).of(which.sub);
    draw_heights(heights.samples().data(), size, heights.axis(), unmeasured, options, picture);
    return {};
}

/// \return empty, or why it was not written
std::string write_pixels(const output::pixel_view& pixels, output::picture_format format, const fs::path& path)
{
    const auto encoded = output::encode_picture(format, pixels);
    if (!encoded) return encoded.error().reason;
    if (path == standardStream) {
        put_standard_output(*encoded);
        return {};
    }
    output::save_file_atomically(path, *encoded);
    std::cout << path_line(path.native()) << '\n';
    return {};
}

/// Encodes one surface. \return empty, or why there is no picture
std::string write_picture(CStorageDoc& document, const surface_number& which, const picture_options& options,
                          const fs::path& path)
{
    const auto format =
        path == standardStream ? output::picture_format::png : output::picture_format_of(path.filename().native());
    if (!format) return "the extension names no picture format (png, bmp, jpg, tif)";
    const VLAxis& heights = document.getAxis(which.image, 0, unsigned(-1));
    if (std::string reason = window_problem(options, heights.get_units()); !reason.empty()) return reason;
    if (!options.legend.empty()) {
        VLDIBImage picture;
        if (std::string reason = draw_with_legend(document, which, options, picture); !reason.empty()) return reason;
        const auto stride = static_cast<std::ptrdiff_t>(picture.stride());
        return write_pixels({picture.bits().data() + stride * (picture.height() - 1), picture.width(), picture.height(),
                             -stride, picture.header().biBitCount / 8},
                            *format, path);
    }
    plain_picture picture;
    if (std::string reason = draw_plain(document, which, options, picture); !reason.empty()) return reason;
    return write_pixels(picture.view(), *format, path);
}

/// Names for the pictures of a call; standard output takes a single one.
class picture_names {
public:
    explicit picture_names(const std::string& output)
    {
        if (output == standardStream) return;
        names.emplace(output, ".png");
        if (!names->areInFolder() && !output::picture_format_of(fs::path(output).filename().native()))
            throw CLI::ValidationError("--output", '"' + visible_text(output) +
                                                       "\" is neither a picture (png, bmp, jpg, tif) nor a "
                                                       "folder, which would end with a slash");
    }
    /// \throws std::runtime_error when there is no room for another
    fs::path next(const std::wstring& input, const fs::path& below, const std::string& suffix, bool alone)
    {
        if (names) return names->next(input, below, suffix, alone);
        if (!std::exchange(isFree, false))
            throw std::runtime_error("only one picture can go to standard output; --image and --sub choose it");
        return standardStream;
    }

private:
    std::optional<output_names> names;
    bool isFree = true;
};

int run(const picture_options& options)
{
    picture_names names(options.output);
    session call;
    call.setFiles(options.files, {options.output});
    const bool oneFile = call.files().size() == 1;
    call.forEachDocument([&](CStorageDoc& document, const std::wstring& path) {
        std::string skipped;
        const std::vector<surface_number> found = surfaces(document, options, skipped);
        if (found.empty()) {
            if (oneFile) throw nothing_to_treat(skipped.empty() ? "there is no surface to draw" : skipped);
            call.passOver();
        }
        for (const surface_number& each : found) {
            const std::string where = base::formatted("image %u, sub-image %u: ", each.image, each.sub);
            try {
                const fs::path picture =
                    names.next(path, call.placeBelow(), base::formatted("-%u-%u", each.image, each.sub),
                               oneFile && found.size() == 1);
                if (picture != standardStream) call.claim(picture);
                const std::string reason = write_picture(document, each, options, picture);
                if (!reason.empty()) call.report(path, where + reason);
            } catch (const std::exception& failure) {
                call.report(path, where + failure_text(failure));
            }
        }
    });
    return call.status();
}

/// Options that would do nothing beside each other. \param hasMode  --mode is given
void check(const picture_options& options, bool hasMode)
{
    constexpr int fixedMode = 0;
    const bool isFixed = !options.fixed.empty() || options.mode == fixedMode;
    if (!options.fixed.empty() && hasMode && options.mode != fixedMode)
        throw CLI::ValidationError("--fixed", "is the window of --mode fixed, and another mode is given");
    if (options.absolute && !isFixed) throw CLI::ValidationError("--absolute", "needs --fixed or --mode fixed");
}

} // namespace

void add_render(CLI::App& app, int& status)
{
    auto options = std::make_shared<picture_options>();
    CLI::App* command = app.add_subcommand("render", "Write pictures of surfaces (png, bmp, jpg, tif)");
    command->add_option("files", options->files, "Files to open")->required();
    command
        ->add_option("-o,--output", options->output,
                     "Picture file, a folder for several, or - for standard output (png)")
        ->required();
    command->add_option("--image", options->image, "Number of the image (default: all)")->transform(whole_number(0));
    command->add_option("--sub", options->sub, "Number of the sub-image (default: all)")->transform(whole_number(0));
    command->add_option("--palette", options->palette, "Palette: " + palette_names() + ", 0 to 7, or a .pal file")
        ->check(palette_problem)
        ->capture_default_str();
    take_words<int>(*command->add_option("--mode", options->mode, "Scale (default: auto)"),
                    {{"fixed", 0}, {"auto", 1}, {"line", 2}, {"planefit", 3}});
    command->add_flag("--inverse", options->inverse, "Read the palette backwards");
    command->add_flag("--highlight", options->highlight, "Show the slope along the rows");
    command->add_flag("--absolute", options->absolute, "The fixed window starts at a height, not at the lowest point");
    command->add_option("--roi", options->roi, "Samples that give the range: LEFT,TOP,RIGHT,BOTTOM")
        ->check(must_parse(parse_rectangle, "LEFT,TOP,RIGHT,BOTTOM"));
    command->add_option("--fixed", options->fixed, "Window of mode fixed: START,SIZE,UNITS")
        ->check(must_parse(parse_fixed_window, "START,SIZE,UNITS with a SIZE above 0"));
    command
        ->add_option("--size", options->size,
                     "Size of the picture: WIDTHxHEIGHT (default: a pixel a sample; with a legend, that of a window)")
        ->check(must_parse(parse_picture_size, "WIDTHxHEIGHT, each from 1 to 32768"));
    take_words(*command->add_option("--legend", options->legend,
                                    "Draw it as a window does: full (axes and margins) or compact (on the picture)"),
               {"full", "compact"});
    command->callback([options, command, &status] {
        check(*options, command->count("--mode") != 0);
        if (!options->fixed.empty()) options->mode = 0;
        status = run(*options);
    });
}

} // namespace vldv::cli
