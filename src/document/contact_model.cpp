#include "document/contact_model.h"

#include <cmath>

namespace vldv::document {

namespace {

/// Halves [low, high] until doubles end, keeping the change of sign of a rising function inside.
template <class Function>
double rising_root(Function&& function, double low, double high) noexcept
{
    for (int i = 0; i < 200; ++i) {
        const double middle = low + (high - low) / 2;
        if (middle <= low || middle >= high) break;
        (function(middle) < 0.0 ? low : high) = middle;
    }
    return low;
}

/// Height of the unbent cantilever that holds the probe at separation `d`.
double cantilever_position(const contact& pair, double d) noexcept { return d - contact_force(pair, d) / pair.spring; }

double snap_in_separation(const contact& pair) noexcept
{
    return std::cbrt(pair.hamaker * pair.tipRadius / (3.0 * pair.spring));
}

} // namespace

double contact_force(const contact& pair, double d) noexcept
{
    if (d > pair.contactDistance) return -pair.hamaker * pair.tipRadius / (6.0 * d * d);
    const double indentation = pair.contactDistance - d;
    const double hertz = 4.0 / 3.0 * pair.modulus * std::sqrt(pair.tipRadius) * indentation * std::sqrt(indentation);
    return hertz - adhesion_force(pair);
}

double adhesion_force(const contact& pair) noexcept
{
    return pair.hamaker * pair.tipRadius / (6.0 * pair.contactDistance * pair.contactDistance);
}

double contact_stiffness(const contact& pair, double load) noexcept
{
    const double root = std::sqrt(pair.tipRadius), pressing = load + adhesion_force(pair);
    const double indentation = std::pow(0.75 * pressing / (pair.modulus * root), 2.0 / 3.0);
    return 2.0 * pair.modulus * root * std::sqrt(indentation);
}

double snap_in_position(const contact& pair) noexcept { return cantilever_position(pair, snap_in_separation(pair)); }

double snap_off_position(const contact& pair) noexcept { return cantilever_position(pair, pair.contactDistance); }

double equilibrium_force(const contact& pair, double z, bool touching) noexcept
{
    const bool stays = touching ? z <= snap_off_position(pair) : z < snap_in_position(pair);
    const double spring = pair.spring;
    // Along both stable branches the cantilever's height rises with the separation.
    const auto excess = [&](double d) { return cantilever_position(pair, d) - z; };
    const double nearest = std::fmin(z, 0.0) - adhesion_force(pair) / spring; // deeper than any equilibrium
    const double d = stays ? rising_root(excess, nearest, pair.contactDistance)
                           : rising_root(excess, snap_in_separation(pair), std::fmax(z, snap_in_separation(pair)));
    return contact_force(pair, d);
}

} // namespace vldv::document
