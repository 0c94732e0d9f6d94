#pragma once
#include "vldv_api.h"

class SPMDataStream;

namespace vldv {

/// A view that shows a volume of curves, as far as other views need to know it.
class VLDV_API IVolumeSource {
public:
    /// The volume ordered by slices: dimension 0 is X, 1 is Y, 2 runs along a curve.
    virtual const SPMDataStream& getVolume() const = 0;
    virtual unsigned getVolumeImage() const = 0;
    /// The user drags the mark of the volume on another view: begins, shows its curve, ends.
    virtual void beginMarkDrag() {}
    virtual void DrawSection() {}
    virtual void endMarkDrag() {}

protected:
    ~IVolumeSource() = default;
};

} // namespace vldv
