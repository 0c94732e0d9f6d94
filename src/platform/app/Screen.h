#pragma once
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <vector>

namespace vldv {

/// Monitors, pointer and keyboard. Coordinates are those of the whole screen.
class VLDV_API IScreen {
public:
    virtual ~IScreen() = default;
    /// In the system's order, at least one.
    virtual std::vector<CRect> monitors() const = 0;
    virtual CPoint pointer() const = 0;
    virtual void setPointer(CPoint point) = 0;
    /// \param key  a `key_code`
    virtual bool isKeyDown(unsigned key) const = 0;
    /// Height of a window's caption.
    virtual int captionHeight() const = 0;
};

} // namespace vldv
