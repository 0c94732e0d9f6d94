#include "output/picture_scaling.h"

#include <algorithm>

namespace output {

namespace {

/// Part of a source pixel that a target pixel covers.
struct share {
    int index;
    double weight;
};

/// For each target pixel the source pixels under it, weights adding up to 1. Growing takes the one in the middle.
std::vector<std::vector<share>> shares(int from, int to)
{
    std::vector<std::vector<share>> out(static_cast<std::size_t>(to));
    const double step = static_cast<double>(from) / to;
    for (int i = 0; i < to; ++i) {
        auto& covered = out[static_cast<std::size_t>(i)];
        if (step <= 1.0) {
            covered.push_back({std::min(static_cast<int>((i + 0.5) * step), from - 1), 1.0});
            continue;
        }
        const double first = i * step, last = std::min((i + 1) * step, static_cast<double>(from));
        for (int k = static_cast<int>(first); k < last; ++k)
            covered.push_back({k, (std::min(last, k + 1.0) - std::max(first, static_cast<double>(k))) / step});
    }
    return out;
}

} // namespace

std::vector<std::byte> scaled_picture(const pixel_view& source, int width, int height)
{
    constexpr int channels = 3;
    const auto columns = shares(source.width, width), rows = shares(source.height, height);
    std::vector<std::byte> out(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * channels);
    std::byte* target = out.data();
    for (const auto& row : rows)
        for (const auto& column : columns)
            for (int c = 0; c < channels; ++c) {
                double sum = 0.0;
                for (const share& y : row)
                    for (const share& x : column)
                        sum += y.weight * x.weight * std::to_integer<int>(source.pixel(x.index, y.index)[c]);
                *target++ = static_cast<std::byte>(std::min(static_cast<int>(sum + 0.5), 255));
            }
    return out;
}

} // namespace output
