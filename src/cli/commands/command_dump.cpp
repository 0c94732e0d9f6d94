// vldv dump: the samples of one sub-image as text.
#include "base/streams/element_access.h"
#include "base/text.h"
#include "cli/choice/frame_choice.h"
#include "cli/commands.h"
#include "cli/session.h"
#include "formats/shared/force/curve_lengths.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <iostream>
#include <span>
#include <vector>

namespace vldv::cli {

namespace {

struct dump_options {
    std::string file;
    frame which{};
    bool raw = false, physical = false;
};

constexpr int roundTripDigits = 17;

template <class T>
std::string raw_text(T sample)
{
    if constexpr (std::is_integral_v<T>)
        return std::to_string(sample);
    else
        return base::shortest(static_cast<double>(sample));
}

/// Rows of a sub-image along dimension 0, each as long as it was measured.
struct sample_rows {
    std::size_t width = 0;
    std::span<const std::size_t> lengths;
};

template <class T>
void print_rows(const T* samples, const sample_rows& rows, const VLAxis* values)
{
    std::string line;
    for (const std::size_t length : rows.lengths) {
        line.clear();
        for (std::size_t i = 0; i < length; ++i) {
            if (i > 0) line += '\t';
            line += values ? base::general(values->at(static_cast<double>(samples[i])), roundTripDigits)
                           : raw_text(samples[i]);
        }
        std::cout << line << '\n';
        samples += rows.width;
    }
}

std::string print(const CStorageDoc& document, const dump_options& options)
{
    if (options.which.image >= document.getImagesNumber())
        return base::formatted("there is no image %u", options.which.image);
    if (options.which.sub >= document.getSubImagesNumber(options.which.image))
        return base::formatted("image %u has no sub-image %u", options.which.image, options.which.sub);
    const SPMDataStream& stream = document.getImage(options.which.image);
    const std::size_t count = document.getSubImageLength(options.which.image);
    const std::size_t width = stream.get_dimensions_number() ? stream.get_dimension(0).length : count;
    std::vector<std::size_t> lengths =
        formats::curve_lengths(stream, document.getString(formats::curveLengthsKey, options.which.image));
    if (lengths.empty()) lengths.assign(document.getSubImagesNumber(options.which.image), count);
    const std::size_t rows = width ? count / width : 1;
    const sample_rows shown{width, std::span(lengths).subspan(options.which.sub * rows, rows)};
    const VLAxis* values = options.physical ? &document.getAxis(options.which.image, 0, unsigned(-1)) : nullptr;
    const bool known = base::with_element_type(stream.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        print_rows(static_cast<const T*>(document.getImageDataS(options.which.image, options.which.sub)), shown,
                   values);
    });
    return known ? "" : "the samples have no type";
}

int run(const dump_options& options)
{
    session call;
    call.setFile(options.file);
    call.forEachDocument([&](CStorageDoc& document, const std::wstring& path) {
        const std::string reason = print(document, options);
        if (!reason.empty()) call.report(path, reason);
    });
    return call.status();
}

} // namespace

void add_dump(CLI::App& app, int& status)
{
    auto options = std::make_shared<dump_options>();
    CLI::App* command = app.add_subcommand(
        "dump", "Print samples, one row a line, row 0 (the lowest) first; curves as long as measured");
    command->add_option("file", options->file, "File to open")->required();
    add_one_frame(*command, options->which);
    CLI::Option* raw = command->add_flag("--raw", options->raw, "Print the stored numbers (the default)");
    command->add_flag("--physical", options->physical, "Print physical values")->excludes(raw);
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
