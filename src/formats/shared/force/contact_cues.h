#pragma once
#include <span>
#include <string_view>

// What tells at which end of a force curve probe and sample touch. Nothing here depends on a format.

namespace vldv::formats {

/// Where the contact lies in a record as a file stores it. `unclear`: what tells it contradicts itself.
enum class contact_end { unknown, first, last, unclear };

/// True for an end that is known.
constexpr bool is_known(contact_end end) noexcept { return end == contact_end::first || end == contact_end::last; }

/// What the probe does in a part of a record.
enum class force_way { unknown, approach, retract };

/// The way that the name of a part tells: "Approach", "Retract 2", "Force retract", "Curve 3, Approach".
force_way way_of_part(std::string_view name);

/// Of samples in the order of time: an approach ends in contact, a retract begins in it.
contact_end contact_in_time(force_way way) noexcept;

/// Of samples whose positions are known: the end that lies nearer to `contact`, where the approach ended. Unknown when
/// no end is nearer.
contact_end contact_by_position(double first, double last, double contact) noexcept;

/// Of forces or deflections alone. The free probe is at rest, so the end whose tenth spreads three times as much as the
/// other's, and by more than noise, is the contact; the mean of the tenths has to be higher there by a fifth of the
/// range and ten times the noise, or not to differ so much, or the outermost samples have to: adhesion pulls a short
/// contact below the free end. When lower values speak against it the answer is `unclear`. Where no end is at rest the
/// higher one counts, unless the curve goes below the lower one: then it may be adhesion that makes that one low.
contact_end contact_by_force(std::span<const double> forces);

/// What most curves tell, three of four of those that tell anything; `unclear` when they do not agree so far.
contact_end contact_of_most(std::span<const contact_end> told) noexcept;

} // namespace vldv::formats
