// vldv render: pictures of surfaces, the right way up, and of curves.
#include "base/text.h"
#include "cli/choice/number_limits.h"
#include "cli/choice/palette_choice.h"
#include "cli/choice/text_check.h"
#include "cli/choice/view_settings.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/output/failure_text.h"
#include "cli/output/output_names.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "cli/results/curve_source.h"
#include "cli/results/plain_picture.h"
#include "cli/results/window_picture.h"
#include "cli/session.h"
#include "output/picture_writer.h"
#include "platform/files/paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <utility>

namespace vldv::cli {

namespace {

namespace fs = std::filesystem;

/// Puts a picture where it goes. \return empty, or why there is none
std::string put(const output::picture_bytes& encoded, const fs::path& path)
{
    if (!encoded) return encoded.error().reason;
    if (path == standardStream) {
        put_standard_output(*encoded);
        return {};
    }
    output::save_file_atomically(path, *encoded);
    std::cout << path_line(path.native()) << '\n';
    return {};
}

/// A surface without a legend, which takes no painter as pixels.
std::string write_plain(CStorageDoc& document, const picture_number& which, const picture_options& options,
                        drawing_format format, const fs::path& path)
{
    plain_picture picture;
    if (std::string reason = draw_plain(document, which, options, picture); !reason.empty()) return reason;
    if (const auto* const pixels = std::get_if<output::picture_format>(&format))
        return put(output::encode_picture(*pixels, picture.view()), path);
    return put(encode_drawing(format, document.GetTitle(), drawing_of(picture)), path);
}

/// \return empty, or why there is no picture
std::string write_picture(CStorageDoc& document, const picture_number& which, const picture_options& options,
                          const fs::path& path)
{
    const auto format =
        path == standardStream ? output::picture_format::png : drawing_format_of(path.filename().native());
    if (!format) return std::string("the extension names no picture format (") + drawingEndings + ')';
    if (which.view == picture_view::surface) {
        const VLAxis& heights = document.getAxis(which.image, 0, unsigned(-1));
        if (std::string reason = window_problem(options, heights.get_units()); !reason.empty()) return reason;
        const bool isWindow = options.legend.empty() ? !options.settings.empty() : options.legend != "none";
        if (!isWindow) return write_plain(document, which, options, *format, path);
    }
    std::string failure;
    const std::string reason = draw_window(document, which, options, [&](const drawing& what) {
        failure = put(encode_drawing(*format, document.GetTitle(), what), path);
    });
    return reason.empty() ? failure : reason;
}

/// Names for the pictures of a call; standard output takes a single one.
class picture_names {
public:
    explicit picture_names(const std::string& output)
    {
        if (output == standardStream) return;
        names.emplace(output, ".png");
        if (!names->areInFolder() && !drawing_format_of(fs::path(output).filename().native()))
            throw CLI::ValidationError("--output", '"' + visible_text(output) + "\" is neither a picture (" +
                                                       drawingEndings + ") nor a folder, which would end with a slash");
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
        const std::vector<picture_number> found = chosen_pictures(document, options, skipped);
        if (found.empty()) {
            if (oneFile) throw nothing_to_treat(skipped);
            call.passOver();
        }
        for (const picture_number& each : found) {
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
    const picture_view view = options.view;
    if (!options.points.empty() && view != picture_view::automatic && view != picture_view::section &&
        view != picture_view::spectrum)
        throw CLI::ValidationError("--points", "are those of a section or its spectrum, and another view is given");
    if (!options.points.empty() && parse_points(options.points)->size() < 2)
        throw CLI::ValidationError("--points", "needs two points for a line");
    if (isFixed && (view == picture_view::fourier || view == picture_view::features))
        throw CLI::ValidationError("--fixed", "is a window of heights, and neither spectra nor features have one");
    if (options.statistics && shows_heights(view))
        throw CLI::ValidationError("--statistics", "draws the lines of force curves, and another view is given");
    if (options.legend == "none" && (view == picture_view::spectrum || options.statistics))
        throw CLI::ValidationError("--legend", "none leaves the curves alone, without spectrum and force lines");
    if (options.legend == "none" && !options.settings.empty() && view == picture_view::surface)
        throw CLI::ValidationError("--set", "sets options of a window, and --legend none draws none");
}

/// The view that a call asks for: points alone ask for a section.
void settle_view(picture_options& options)
{
    if (options.view == picture_view::automatic && !options.points.empty()) options.view = picture_view::section;
}

} // namespace

void add_render(CLI::App& app, int& status)
{
    auto options = std::make_shared<picture_options>();
    CLI::App* command =
        app.add_subcommand("render", std::string("Write pictures of surfaces and curves (") + drawingEndings + ')');
    command->add_option("files", options->files, "Files to open")->required();
    command
        ->add_option("-o,--output", options->output,
                     "Picture file, a folder for several, or - for standard output (png)")
        ->required();
    command->add_option("--image", options->image, "Number of the image (default: all)")->transform(whole_number(0));
    command
        ->add_option("--sub", options->sub,
                     "Number of the sub-image, or of the active curve (default: all surfaces, the first curve)")
        ->transform(whole_number(0));
    take_words<picture_view>(
        *command->add_option("--view", options->view, "What to draw (default: what a window opens as)"),
        {{"surface", picture_view::surface},
         {"section", picture_view::section},
         {"spectrum", picture_view::spectrum},
         {"parametric", picture_view::parametric},
         {"histogram", picture_view::histogram},
         {"fourier", picture_view::fourier},
         {"features", picture_view::features}});
    command->add_option("--points", options->points, "Draw the section along a line through samples: x,y;x,y;…")
        ->check(points_problem);
    command->add_flag("--statistics", options->statistics, "Draw the lines of force curves");
    command->add_option("--set", options->settings, "Set an option of the view, NAME=VALUE; may be repeated")
        ->allow_extra_args(false)
        ->check(setting_problem);
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
                     "Size of the picture: WIDTHxHEIGHT (default: that of a window; without one, a pixel a sample)")
        ->check(must_parse(parse_picture_size, "WIDTHxHEIGHT, each from 1 to 32768"));
    take_words(
        *command->add_option("--legend", options->legend,
                             "Draw surfaces as a window does: full (axes and margins) or compact (on the picture); "
                             "none draws curves alone"),
        {"full", "compact", "none"});
    command->callback([options, command, &status] {
        settle_view(*options);
        check(*options, command->count("--mode") != 0);
        if (!options->fixed.empty()) options->mode = 0;
        status = run(*options);
    });
}

} // namespace vldv::cli
