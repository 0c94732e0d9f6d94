#pragma once
#include "base/VLAxis.h"
#include "document/examples/examples.h"
#include "formats/shared/heights.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace vldv::document {

/// Random numbers that are the same on every machine: splitmix64 (G. L. Steele, D. Lea, C. H. Flood, OOPSLA 2014).
class random_numbers {
public:
    explicit random_numbers(std::uint64_t seed) noexcept : state(seed) {}
    /// In [0, 1).
    double uniform() noexcept;
    double between(double low, double high) noexcept { return low + (high - low) * uniform(); }
    /// Normal with mean 0 and standard deviation 1, as a sum of twelve uniform ones: no library function whose last
    /// digit could differ.
    double normal() noexcept;

private:
    std::uint64_t next() noexcept;
    std::uint64_t state;
};

/// A square image: side in points and in `units`.
struct square {
    unsigned points;
    double size;
    const char* units;
    double step() const noexcept { return size / points; }
    VLAxis axis() const { return VLAxis(0.0, step(), units); }
};

/// An image of `values`, in `valueUnits`; as many sub-images as there are names, or one.
formats::recorded_image square_image(const std::string& id, const square& area, const char* valueUnits,
                                     std::span<const double> values, std::initializer_list<const char*> subimages = {});

/// Curves of `points` values over `x`, as many sub-images as there are names, or one.
formats::recorded_image curve_image(const std::string& id, unsigned points, const VLAxis& x, const char* valueUnits,
                                    std::span<const double> values, std::initializer_list<const char*> subimages = {});

/// An example without images whose strings say that it is synthetic and how it was made.
example empty_example(const char* fileName, const char* title, const std::string& model);

/// "0.23545 nm"
std::string with_unit(double value, const char* unit);

} // namespace vldv::document
