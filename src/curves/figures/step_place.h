#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>

namespace vldv::curves {

/// The places of a step, one a line of the image in which it was found, as its stream holds them.
class VLDV_INTERNAL_API step_places {
public:
    /// \param fromLeft_  values are columns, else columns counted from the image's right end
    /// \param columns_   of that image
    /// \return nothing for a stream without lines, or one that is no curve of 16-bit numbers
    static std::optional<step_places> of(const SPMDataStream& step, bool fromLeft_, int columns_);

    int count() const noexcept { return length; }
    /// The line of the image under a share of the step's length.
    int lineAt(double share) const noexcept;
    /// The share at which a line stands; nothing for one that the step does not reach.
    std::optional<double> shareOfLine(int line) const noexcept;
    /// The step's sample for a line; nothing likewise.
    std::optional<unsigned> sampleOfLine(int line) const noexcept;
    /// The share of the line's width at which the step crosses it; nothing likewise.
    std::optional<double> shareAcross(int line) const noexcept;
    /// What the step holds when it crosses at a share of the line's width.
    std::int16_t valueAcross(double share) const noexcept;

private:
    step_places(const SPMDataStream& step, int firstLine_, bool fromLeft_, int columns_);

    const std::int16_t* values;
    int length, firstLine, columns;
    bool fromLeft;
};

} // namespace vldv::curves
