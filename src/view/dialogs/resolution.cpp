#include "view/dialogs/resolution.h"

#include "document/StorageDoc.h"
#include "document/update_hints.h"

namespace vldv::view {

void set_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes, const VLAxis& x, const VLAxis& y,
                    const VLAxis& z)
{
    document.pushUndo(image, true);
    document.setAxis(image, axes.x, x, 0);
    if (document.getImage(image).get_dimensions_number() > 1) document.setAxis(image, axes.y, y, 1);
    document.setAxis(image, axes.z, z, valueAxes);
    document.SetModifiedFlag(true);
    document.UpdateAllViews(nullptr, document::data_hint(image));
}

} // namespace vldv::view
