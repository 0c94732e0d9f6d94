// vldv isoline: the line around the samples that are as high as one of them.
#include "surface/figures/measure/isoline.h"

#include "base/text.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/frame_voids.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "document/samples/rising_heights.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

namespace vldv::cli {

namespace {

struct isoline_options {
    std::string file;
    CPoint at;
    frame which{};
    bool json = false;
};

using json = nlohmann::ordered_json;

void print_text(const std::vector<CPoint>& contour)
{
    std::string text;
    for (const CPoint& point : contour) text += std::to_string(point.x) + '\t' + std::to_string(point.y) + '\n';
    std::cout << text;
}

json to_json(CPoint point) { return json::array({point.x, point.y}); }

void print_json(const std::wstring& path, const isoline_options& options, int level, const std::vector<CPoint>& contour)
{
    json points = json::array();
    for (const CPoint& point : contour) points.push_back(to_json(point));
    const json out = {{"path", base::valid_utf8(base::narrow(path))},
                      {"image", options.which.image},
                      {"sub", options.which.sub},
                      {"at", to_json(options.at)},
                      {"level", level},
                      {"contour", points}};
    cli::print_json(out);
}

std::string print(const CStorageDoc& document, const std::wstring& path, const isoline_options& options)
{
    if (options.which.image >= document.getImagesNumber())
        return base::formatted("there is no image %u", options.which.image);
    const SPMDataStream& stream = document.getImage(options.which.image);
    if (stream.array_type() != SPM_ARRAY_INT16 || stream.get_dimensions_number() != 2)
        return base::formatted("image %u is no surface of 16-bit samples", options.which.image);
    if (options.which.sub >= document.getSubImagesNumber(options.which.image))
        return base::formatted("image %u has no sub-image %u", options.which.image, options.which.sub);
    const auto* const samples =
        static_cast<const std::int16_t*>(document.getImageDataS(options.which.image, options.which.sub));
    const document::rising_heights heights({samples, document.getSubImageLength(options.which.image)},
                                           document.getAxis(options.which.image, 0, unsigned(-1)));
    const frame_voids voids = voids_of(document, options.which);
    const surface::sample_frame frame{heights.samples(), static_cast<int>(stream.get_dimension(0).length),
                                      static_cast<int>(stream.get_dimension(1).length), voids.runs};
    const CPoint seed = options.at;
    if (!frame.contains(seed))
        return base::formatted("--at %d,%d lies outside of the image of %d x %d samples", seed.x, seed.y, frame.width,
                               frame.height);
    if (!frame.isMeasured(seed)) return base::formatted("--at %d,%d was not measured", seed.x, seed.y);
    const std::vector<CPoint> contour = surface::trace_isoline(frame, seed);
    if (contour.empty())
        std::cerr << visible_text(base::narrow(path)) << ": " << surface::why_no_isoline(frame, seed) << '\n';
    if (options.json)
        print_json(path, options, samples[std::ptrdiff_t{seed.y} * frame.width + seed.x], contour);
    else
        print_text(contour);
    return "";
}

/// "X,Y", one word: files may follow.
std::optional<CPoint> parse_sample(const std::string& text)
{
    const auto parts = base::split(text, ',');
    if (parts.size() != 2) return std::nullopt;
    const auto x = base::whole_integer(parts[0]), y = base::whole_integer(parts[1]);
    const auto isPlace = [](const std::optional<long long>& at) {
        return at && *at >= 0 && *at <= std::numeric_limits<int>::max();
    };
    if (!isPlace(x) || !isPlace(y)) return std::nullopt;
    return CPoint{static_cast<int>(*x), static_cast<int>(*y)};
}

int run(const isoline_options& options)
{
    session call;
    call.setFile(options.file);
    call.forEachDocument([&](CStorageDoc& document, const std::wstring& path) {
        const std::string reason = print(document, path, options);
        if (!reason.empty()) call.report(path, reason);
    });
    return call.status();
}

} // namespace

void add_isoline(CLI::App& app, int& status)
{
    auto options = std::make_shared<isoline_options>();
    CLI::App* command =
        app.add_subcommand("isoline", "Print the line around what is at least as high as a sample, one point a line");
    command->add_option("file", options->file, "File to open")->required();
    command
        ->add_option_function<std::string>(
            "--at", [options](const std::string& text) { options->at = *parse_sample(text); },
            "Sample as X,Y; row 0 is the lowest")
        ->check([](const std::string& text) {
            return parse_sample(text) ? "" : "expected X,Y, two whole numbers from 0 on, not \"" + text + '"';
        })
        ->required();
    add_one_frame(*command, options->which);
    command->add_flag("--json", options->json, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
