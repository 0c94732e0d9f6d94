// vldv fourier: edits the spectra of surfaces, and shows them.
#include "base/text.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/frame_voids.h"
#include "cli/choice/picture_options.h"
#include "cli/choice/text_check.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/result_files.h"
#include "cli/output/terminal.h"
#include "cli/results/peak_output.h"
#include "cli/session.h"
#include "spectra/figures/fourier.h"
#include "spectra/figures/spectrum_stream.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct fourier_options {
    std::vector<std::string> files;
    frame_choice choice;
    std::vector<CRect> rects; ///< as drawn: centred, sides inclusive
    bool elliptic = false;
    std::optional<spectra::spectrum_edit> edit;
    spectra::spectrum_mode mode = spectra::spectrum_mode::power;
    double contrast = 0.5;
    std::string output, spectrum;
    bool tellsPeaks = false, asJson = false, replaces = false;
};

unsigned threads() { return std::max(std::thread::hardware_concurrency(), 1u); }

/// Says which rectangle selects nothing of a spectrum; empty when each selects something.
std::string refuse_rects(const std::vector<CRect>& rects, int width, int height)
{
    const int left = -spectra::zero_frequency(width), top = -spectra::zero_frequency(height);
    // The only frequency of a side of one sample is 0.
    const int right = std::max(left + width - 1, 0), bottom = std::max(top + height - 1, 0);
    for (const CRect& rect : rects)
        if (std::max(rect.left, rect.right) < left || std::min(rect.left, rect.right) > right ||
            std::max(rect.top, rect.bottom) < top || std::min(rect.top, rect.bottom) > bottom)
            return base::formatted("--rect %d,%d,%d,%d lies outside of the spectrum, which has columns %d to %d and "
                                   "rows %d to %d",
                                   rect.left, rect.top, rect.right, rect.bottom, left, right, top, bottom);
    return {};
}

std::vector<std::int16_t> picture_of(const spectra::frame_spectrum& spectrum, const fourier_options& options,
                                     float& largest)
{
    std::vector<float> magnitudes(spectrum.packed.size());
    largest = spectra::spectrum_magnitudes(spectrum, options.mode, magnitudes);
    std::vector<std::int16_t> picture(magnitudes.size());
    spectra::draw_spectrum(magnitudes, spectrum.width, spectrum.height, largest, options.contrast, picture);
    return picture;
}

/// What a call makes of one document.
class document_spectra {
public:
    document_spectra(CStorageDoc& document_, const fourier_options& options_) : document(document_), options(options_)
    {
    }

    /// Edits the samples of the frames in the document and keeps the pictures of their spectra.
    void run(const std::vector<frame>& frames)
    {
        for (const frame& each : frames) {
            const SPMDataStream& stream = document.getImage(each.image);
            const std::span<std::int16_t> samples = frame_samples(document, each);
            const int width = static_cast<int>(stream.get_dimension(0).length);
            const int height = static_cast<int>(stream.get_dimension(1).length);
            spectra::frame_spectrum spectrum = spectra::transform_frame(samples, width, height, threads());
            if (options.edit) {
                if (const std::string reason = refuse_rects(options.rects, width, height); !reason.empty())
                    throw std::runtime_error(frame_title(document, each) + ": " + reason);
                edit(spectrum);
                spectra::restore_frame(spectrum, samples, threads());
            }
            json entry = {{"id", stream.get_name()}, {"image", each.image}, {"subimage", each.sub}};
            const frame_voids voids = all_included(voids_of(document, each));
            add_voids(entry, voids);
            if (voids.included != 0) remarks += "  " + frame_title(document, each) + '\n' + voids_text(voids);
            if (options.tellsPeaks) tellPeaks(entry, document, each, spectrum);
            if (!options.spectrum.empty()) {
                float largest = 0.0f;
                pictures[each.image].subs.push_back(each.sub);
                pictures[each.image].drawn.push_back(picture_of(spectrum, options, largest));
                entry["max"] = largest;
            }
            told.push_back(std::move(entry));
        }
    }

    /// The pictures of all images as a document of their own.
    void fill(CStorageDoc& target) const
    {
        for (const auto& [image, each] : pictures) {
            const SPMDataStream stream = spectra::make_spectrum_stream(document.getImage(image), each.subs, each.drawn);
            target.AddNewImages(&stream, 1);
        }
    }

    const json& entries() const { return told; }
    /// What has to be said of the spectra, in lines.
    const std::string& text() const { return remarks; }

private:
    void tellPeaks(json& entry, const CStorageDoc& of, const frame& which, const spectra::frame_spectrum& spectrum)
    {
        const told_peaks peaks = peaks_of(of, which, spectrum);
        add_peaks(entry, peaks);
        remarks += "  " + frame_title(of, which) + '\n' + peaks_lines(peaks);
    }
    void edit(spectra::frame_spectrum& spectrum) const
    {
        std::vector<CRect> parts;
        for (const CRect& rect : options.rects) spectra::split_rect(rect, parts);
        const auto shape =
            options.elliptic ? spectra::selection_shape::elliptic : spectra::selection_shape::rectangular;
        spectra::edit_spectrum(spectrum, parts, shape, *options.edit);
    }

    struct image_pictures {
        std::vector<unsigned> subs;
        std::vector<std::vector<std::int16_t>> drawn;
    };
    CStorageDoc& document;
    const fourier_options& options;
    std::map<unsigned, image_pictures> pictures;
    json told = json::array();
    std::string remarks;
};

/// The two kinds of files that a call writes.
struct fourier_outputs {
    fourier_outputs(session& call, const fourier_options& options)
    {
        if (!options.output.empty()) edited.emplace(call, output_names::ofContainers(options.output));
        if (!options.spectrum.empty()) shown.emplace(call, output_names::ofContainers(options.spectrum));
    }

    std::optional<result_files> edited, shown;
};

/// Each file is told when it is written: the next one may fail.
void treat(CStorageDoc& document, const std::wstring& path, const fourier_options& options, fourier_outputs& outputs,
           json& entries)
{
    const std::vector<frame> frames = chosen_frames(document, options.choice, refuse_no_surface);
    document_spectra made(document, options);
    made.run(frames);
    entries.push_back({{"path", base::narrow(path)}, {"images", made.entries()}});
    if (!options.asJson && !made.text().empty()) std::cout << path_line(base::narrow(path)) << '\n' << made.text();
    const auto tell = [&](const char* kind, const std::filesystem::path& output) {
        entries.back()[kind] = output.native();
        if (!options.asJson) std::cout << path_line(output.native()) << '\n';
    };
    if (outputs.edited) tell("output", outputs.edited->save(document, path));
    if (!outputs.shown) return;
    CStorageDoc pictures;
    made.fill(pictures);
    tell("spectrum", outputs.shown->save(pictures, path, "-spectrum"));
}

int run(const fourier_options& options)
{
    session call;
    call.letReplace(options.replaces);
    call.setFiles(options.files, {options.output, options.spectrum});
    fourier_outputs outputs(call, options);
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        treat(document, path, options, outputs, entries);
    });
}

/// Sides far outside of any spectrum are of no use and would leave the numbers that the selection counts with.
std::optional<CRect> parse_bins(const std::string& text)
{
    constexpr int limit = 1 << 20;
    const auto sides = parse_rectangle(text);
    if (!sides) return std::nullopt;
    for (const int side : *sides)
        if (side < -limit || side > limit) return std::nullopt;
    return CRect((*sides)[0], (*sides)[1], (*sides)[2], (*sides)[3]);
}

std::optional<double> parse_finite(const std::string& text)
{
    const auto number = base::whole_number(text);
    return number && std::isfinite(static_cast<float>(*number)) ? number : std::nullopt;
}

void check(const fourier_options& options)
{
    if (options.output.empty() && options.spectrum.empty() && !options.tellsPeaks)
        throw CLI::ValidationError("fourier", "-o, --spectrum or --peaks is needed, or several of them");
    if (options.edit.has_value() != !options.rects.empty())
        throw CLI::ValidationError("fourier", "--rect goes with one of --zero-inner, --zero-outer and --scale");
    if (!options.output.empty() && !options.edit) throw CLI::ValidationError("fourier", "-o needs --rect and an edit");
    if (options.elliptic && options.rects.empty()) throw CLI::ValidationError("--elliptic", "needs --rect");
}

void add_edits(CLI::App& command, const std::shared_ptr<fourier_options>& options)
{
    command
        .add_option_function<std::vector<std::string>>(
            "--rect",
            [options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) options->rects.push_back(*parse_bins(text));
            },
            "Bins LEFT,TOP,RIGHT,BOTTOM, all inclusive, counted from the zero frequency; may be repeated")
        ->check(must_parse(parse_bins, "LEFT,TOP,RIGHT,BOTTOM, each from -1048576 to 1048576"))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_flag("--elliptic", options->elliptic, "Select the ellipses in the rectangles");
    CLI::Option_group* edits = command.add_option_group("edit", "What becomes of the bins");
    edits->require_option(0, 1);
    edits->add_flag_callback(
        "--zero-inner", [options] { options->edit = spectra::zeroInner; }, "Zero what is selected");
    edits->add_flag_callback("--zero-outer", [options] { options->edit = spectra::zeroOuter; }, "Zero all else");
    edits
        ->add_option_function<std::string>(
            "--scale",
            [options](const std::string& text) {
                options->edit = spectra::spectrum_edit{false, static_cast<float>(*parse_finite(text))};
            },
            "Multiply what is selected")
        ->check(must_parse(parse_finite, "a number up to 3.4e38"));
}

} // namespace

void add_fourier(CLI::App& app, int& status)
{
    auto options = std::make_shared<fourier_options>();
    CLI::App* command = app.add_subcommand("fourier", "Edit the spectra of surfaces, and show them");
    command->add_option("files", options->files, "Files to open")->required();
    add_frame_options(*command, options->choice);
    add_edits(*command, options);
    command->add_option("-o,--output", options->output, "File with the edited surfaces; a folder for several");
    command->add_option("--spectrum", options->spectrum, "File with the spectra as shown; a folder for several");
    take_words<spectra::spectrum_mode>(
        *command->add_option("--mode", options->mode, "What is shown (default: power)"),
        {{"power", spectra::spectrum_mode::power}, {"magnitude", spectra::spectrum_mode::magnitude}});
    command
        ->add_option_function<std::string>(
            "--contrast", [options](const std::string& text) { options->contrast = *parse_finite(text); },
            "Exponent of what is shown (default: 0.5)")
        ->check(must_parse([](const std::string& text) { return parse_finite(text).value_or(0.0) >= 1e-7; },
                           "a number from 1e-7 on"));
    command->add_flag("--peaks", options->tellsPeaks, "Tell the strongest waves and their lattice");
    command->add_flag("--force", options->replaces, "Replace containers that hold something else");
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, command, &status] {
        check(*options);
        for (const char* shown : {"--mode", "--contrast"})
            if (options->spectrum.empty() && command->count(shown) != 0)
                throw CLI::ValidationError(shown, "is of what --spectrum shows, which is not given");
        status = run(*options);
    });
}

} // namespace vldv::cli
