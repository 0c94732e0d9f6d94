#include "base/VLAxis.h"

#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <utility>

namespace {

char* copied(const char* text)
{
    if (!text || !*text) return nullptr;
    const std::size_t bytes = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(VLAllocator::operator new(bytes), text, bytes));
}

} // namespace

VLAxis::VLAxis(double start_, double scale_, const char* units_) : start(start_), scale(scale_), units(copied(units_))
{
}

VLAxis::VLAxis(const VLAxis& other) : start(other.start), scale(other.scale), units(copied(other.units)) {}

VLAxis::VLAxis(VLAxis&& other) noexcept
    : start(other.start), scale(other.scale), units(std::exchange(other.units, nullptr))
{
}

VLAxis::~VLAxis() { VLAllocator::operator delete(units); }

VLAxis& VLAxis::operator=(const VLAxis& other)
{
    if (this == &other) return *this;
    set_units(other.units);
    start = other.start;
    scale = other.scale;
    return *this;
}

VLAxis& VLAxis::operator=(VLAxis&& other) noexcept
{
    start = other.start;
    scale = other.scale;
    std::swap(units, other.units);
    return *this;
}

bool VLAxis::operator==(const VLAxis& other) const noexcept
{
    const auto sameBits = [](double a, double b) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    };
    return sameBits(start, other.start) && sameBits(scale, other.scale) &&
           std::strcmp(get_units(), other.get_units()) == 0;
}

void VLAxis::set_units(const char* text)
{
    char* replacement = copied(text);
    VLAllocator::operator delete(units);
    units = replacement;
}

void VLAxesContainer::set_axis(unsigned index, const VLAxis& axis)
{
    assert(index <= axes.size() && "axes are added one at a time");
    if (index == axes.size())
        axes.push_back(axis);
    else if (index < axes.size())
        axes[index] = axis;
}
