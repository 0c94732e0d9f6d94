#pragma once
#include "base/VLAxis.h"
#include "formats/wip/wip_tree.h"

#include <map>
#include <string>
#include <vector>

namespace vldv::formats {

/// A data object of a project.
struct wip_object {
    std::string className, caption;
    const wip_tag* content = nullptr; ///< the tag named like its class
    const wip_tag* data = nullptr;    ///< the tag that holds it and those of its base classes
};

/// Where the points of a picture lie. Points may run against the coordinate.
struct wip_plane {
    VLAxis x, y; ///< ascending, in the order of coordinates
    bool isMirroredX = false, isMirroredY = false;
};

/// Where the values of a spectrum lie: on an axis, or, when that is not even, at one place each.
struct wip_spectrum_axis {
    VLAxis axis;
    std::vector<double> places; ///< empty when the axis tells all
    std::string units;
};

/// The objects of a project, which refer to each other by number. The tree must outlive it.
class wip_project {
public:
    wip_project(source& file_, const wip_tag& root);

    const std::vector<wip_object>& objects() const noexcept { return list; }
    /// A number of the object, or of `fallback` when it has none.
    double number(const wip_object& object, const char* tag, double fallback) const;

    /// \param transformation  number of a space transformation; 0 or an unknown one gives points without a place, the
    ///                        top row first
    wip_plane plane(const wip_object& object, const char* transformation, unsigned columns, unsigned rows) const;
    wip_spectrum_axis spectrumAxis(const wip_object& object, unsigned values) const;
    /// Unit of the values, empty when none is told.
    std::string valueUnits(const wip_object& object) const;

    /// The object whose number the tag holds, or null.
    const wip_object* referred(const wip_object& object, const char* tag) const;

private:
    std::vector<double> numbers(const wip_tag& tag, const std::string& name, std::size_t count) const;
    std::string standardUnit(const wip_object& transformation) const;
    std::vector<double> wavelengths(const wip_object& transformation, unsigned values) const;
    std::vector<double> gratingWavelengths(const wip_object& transformation, unsigned values) const;
    std::vector<double> polynomialWavelengths(const wip_object& transformation, unsigned values) const;
    std::vector<double> table(const wip_object& transformation, unsigned values) const;
    void interpretWavelengths(const wip_object& object, wip_spectrum_axis& axis) const;

    source& file;
    std::vector<wip_object> list;
    std::map<long long, std::size_t> byNumber;
};

} // namespace vldv::formats
