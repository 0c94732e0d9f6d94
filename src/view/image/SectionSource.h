#pragma once
#include "platform/draw/drawing.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

class CDC;
class CImageView;

namespace vldv {

/// Where the step comes from that a section shows.
struct step_origin {
    unsigned step_image_index = 0; ///< image in which it was found
    bool step_invert = false;      ///< values are columns of that image, else columns counted from its right end
};

/// A section or line profile as the surface under it sees it. Points are samples of the section's own image.
class VLDV_API ISection {
public:
    /// The view that shows the profile; it lives as long as this.
    virtual CImageView& sectionView() = 0;
    /// Columns and rows of the section's image.
    virtual CSize sourceSize() const = 0;
    virtual unsigned getPointsNumber() const = 0;
    virtual CPoint getSectionPoint(unsigned index) const = 0;
    /// Appends where `index` is the number of points.
    virtual void setSectionPoint(unsigned index, CPoint point) = 0;
    /// A profile of one row or column.
    virtual bool isLine() const = 0;
    virtual bool isHorizontal() const = 0;
    /// Points have changed: takes the profile anew.
    virtual void reloadSection() = 0;
    /// Draws the section over a surface.
    /// \param shadow  width of a grey outline; 0 for none
    /// \param size    of the points' squares, a third of their side before DPI
    /// \param under   draws what `line` leaves out
    virtual void drawOn(CImageView& surface, CDC& dc, int shadow, int size, const CPen& line, const CPen& under,
                        bool withMarks) = 0;
    /// The section shows a step, and its crossbar leads a profile of the image that the step was found in.
    virtual void setStepOrigin(const step_origin&) {}

protected:
    ~ISection() = default;
};

} // namespace vldv
