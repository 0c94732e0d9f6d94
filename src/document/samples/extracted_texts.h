#pragma once
#include "formats/shared/void_ranges.h"

#include <cstddef>
#include <vector>

class CStorageDoc;

namespace vldv::document {

/// What `\Curve lengths` and `\Void samples` of a volume say of curves that are taken out of it.
class extracted_texts {
public:
    extracted_texts() = default; ///< of which nothing is known
    /// \param volume  the samples of the image in the order X, Y, along a curve; of an image in another order than
    /// along a curve, X, Y nothing is known
    extracted_texts(const CStorageDoc& source, unsigned image, const SPMDataStream& volume);
    /// Adds it to the texts of an image of curves, to which those at (x, y) have just been appended: one of each
    /// sub-image of the volume.
    void addTo(CStorageDoc& target, unsigned image, unsigned x, unsigned y) const;

private:
    void addLengths(CStorageDoc& target, unsigned image, std::size_t cell) const;
    void addVoids(CStorageDoc& target, unsigned image, std::size_t cell) const;

    std::size_t points = 0, columns = 0, cells = 0, subimages = 0;
    std::vector<std::size_t> lengths; ///< of all curves; empty when they are whole
    std::vector<formats::void_range> voids;
};

} // namespace vldv::document
