#pragma once
#include "platform/draw/drawing.h"

#include <vector>

namespace vldv::paint {

/// A pen in pixels of the surface.
struct device_pen {
    double width = 1.0;
    std::vector<double> pattern; ///< lengths on, off, on …; empty: a whole line
    bool isThin = true;          ///< as narrow as a line gets
    bool showsGaps = false;      ///< gaps take the background colour in opaque mode
};

/// \param scale  pixels a logical unit, which only a geometric pen asks for   \param ratio  pixels of its own unit
device_pen device_pen_of(const CPen& pen, double scale, double ratio);

/// The pattern of a line, followed along its length.
class dash_walk {
public:
    explicit dash_walk(const std::vector<double>& pattern_);

    /// Goes `length` further and calls `piece(on, from, to)` for each piece of that stretch that has a part between
    /// `first` and `last`, all counted from where the stretch begins.
    template <typename F>
    void advance(double length, double first, double last, F&& piece);

private:
    struct place {
        std::size_t index;
        double left; ///< of the present piece
    };
    place at(double position) const;

    std::vector<double> pattern; ///< an even count, all together above 0; or empty
    double total = 0.0;
    double position = 0.0; ///< since the line began
};

template <typename F>
void dash_walk::advance(double length, double first, double last, F&& piece)
{
    if (pattern.empty()) {
        if (first < last) piece(true, 0.0, length);
        return;
    }
    first = first < 0.0 ? 0.0 : first;
    last = last > length ? length : last;
    if (first < last) {
        place here = at(position + first);
        for (double from = first; from < last;) {
            const double to = from + here.left < length ? from + here.left : length;
            if (from < to) piece(here.index % 2 == 0, from, to);
            from = from + here.left;
            here.index = (here.index + 1) % pattern.size();
            here.left = pattern[here.index];
        }
    }
    position += length;
}

} // namespace vldv::paint
