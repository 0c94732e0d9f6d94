#pragma once
#include "base/VLAllocator.h"
#include "vldv_api.h"

#include <vector>

/// A linear coordinate: sample i lies at start + i * scale, in `units`.
/// A default axis starts at 0, steps by 1 and has no units.
class VLDV_API VLAxis {
public:
    VLAxis() noexcept = default;
    VLAxis(double start_, double scale_, const char* units_);
    VLAxis(const VLAxis& other);
    VLAxis(VLAxis&& other) noexcept;
    virtual ~VLAxis();
    VLAxis& operator=(const VLAxis& other);
    VLAxis& operator=(VLAxis&& other) noexcept;
    /// Same start, scale and units, bit for bit.
    bool operator==(const VLAxis& other) const noexcept;

    double start = 0.0;
    double scale = 1.0;

    /// UTF-8 text, never null.
    const char* get_units() const noexcept { return units ? units : ""; }
    /// Copies the text; null gives empty units.
    void set_units(const char* text);

    double at(double index) const noexcept { return start + index * scale; }

private:
    char* units = nullptr;
};

/// Ordered axes of one dimension or of the values: the same samples measured in different quantities.
class VLDV_API VLAxesContainer : public VLAllocator {
public:
    virtual ~VLAxesContainer() = default;
    VLAxesContainer() = default;
    VLAxesContainer(const VLAxesContainer&) = default;
    VLAxesContainer(VLAxesContainer&&) noexcept = default;
    VLAxesContainer& operator=(const VLAxesContainer&) = default;
    VLAxesContainer& operator=(VLAxesContainer&&) noexcept = default;
    bool operator==(const VLAxesContainer& other) const noexcept { return axes == other.axes; }

    unsigned get_axes_number() const noexcept { return static_cast<unsigned>(axes.size()); }
    /// The index must be below the count.
    const VLAxis& get_axis(unsigned index) const noexcept { return axes[index]; }
    /// Replaces axis `index`; an index equal to the count appends. A larger index is a programming error.
    void set_axis(unsigned index, const VLAxis& axis);

private:
    std::vector<VLAxis> axes;
};
