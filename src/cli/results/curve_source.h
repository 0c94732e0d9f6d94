#pragma once
#include "curves/figures/profile.h"
#include "document/StorageDoc.h"

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace vldv::cli {

/// Which curves of the files a call is about.
struct curve_options {
    std::vector<std::string> files;
    std::string points;
    int image = -1, sub = -1; ///< negative: all
    unsigned width = 0;
    bool asJson = false;
};
/// Adds files, --image, --sub and --json; with `hasPoints` --points, which is refused when it cannot be read.
void add_curve_options(CLI::App& command, curve_options& options, bool hasPoints);

/// "x,y;x,y;…", or three numbers a point; the same number in all. Nothing for any other text.
std::optional<std::vector<curves::grid_point>> parse_points(std::string_view text);
/// Why a text is no such list, empty when it is: CLI11's judge of the option.
std::string points_problem(const std::string& text);

/// The curves along a line through one image of a document.
struct section {
    unsigned image = 0;
    std::vector<curves::grid_point> points;
    curves::profile profile;
    VLAxis positions, values;
    unsigned first = 0, last = 0; ///< sub-images that were asked for
};
/// The curves of each image that was asked for. Without points the one-dimensional images count, else those with as
/// many dimensions as a point has numbers. \throws std::runtime_error with the reason when there is none
std::vector<section> sections_of(const CStorageDoc& document, const curve_options& options);

nlohmann::ordered_json axis_json(const VLAxis& axis);
/// "PATH, image N: ID", to tell the parts of a longer output apart.
std::string heading(const CStorageDoc& document, const std::wstring& path, unsigned image);

/// What a command says of a section.
struct section_output {
    std::function<nlohmann::ordered_json(const section&)> json; ///< behind path and image
    std::function<std::string(const CStorageDoc&, const section&)> text;
};
/// Opens the files and prints what is said of their sections. \return the exit status
int print_sections(const curve_options& options, const section_output& output);

} // namespace vldv::cli
