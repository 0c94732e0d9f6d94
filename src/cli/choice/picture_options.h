#pragma once
#include <optional>
#include <string>
#include <vector>

namespace vldv::cli {

/// What a picture shows an image in; `automatic` is what its window would open as.
enum class picture_view { automatic, surface, section, spectrum, parametric, histogram, fourier, features };

/// It shows a frame of heights in a picture of its own, and no curves.
constexpr bool shows_heights(picture_view view) noexcept
{
    return view == picture_view::surface || view == picture_view::histogram || view == picture_view::fourier ||
           view == picture_view::features;
}

/// What `vldv render` was asked for.
struct picture_options {
    std::vector<std::string> files;
    std::string output;
    int image = -1, sub = -1; ///< -1: all
    picture_view view = picture_view::automatic;
    std::string points;                ///< of a section, as `parse_points` takes them
    std::vector<std::string> settings; ///< "NAME=VALUE" of options of the view
    bool statistics = false;
    std::string palette = "brown"; ///< as `choose_palette` takes it
    int mode = 1;                  ///< of the scale: 0 fixed, 1 auto, 2 line, 3 line with planefit
    bool inverse = false, highlight = false, absolute = false;
    std::string roi, fixed, size;
    std::string legend; ///< "full", "compact", "none", or empty
};

struct fixed_window {
    double start, size;
    std::string units;
};

struct picture_size {
    int width, height;
};

/// "START,SIZE,UNITS", finite and the size positive; nothing for another text.
std::optional<fixed_window> parse_fixed_window(const std::string& text);
/// Why the window of `--fixed` shows nothing of an image with heights in these units, or empty.
std::string window_problem(const picture_options& options, const char* units);
/// "WIDTHxHEIGHT", both positive and at most 32768.
std::optional<picture_size> parse_picture_size(const std::string& text);
/// "LEFT,TOP,RIGHT,BOTTOM" in samples.
std::optional<std::vector<int>> parse_rectangle(const std::string& text);

} // namespace vldv::cli
