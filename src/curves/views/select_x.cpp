#include "curves/views/select_x.h"

#include "curves/views/ParametricCurveView.h"
#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/ImageView.h"
#include "view/frame/ImgOpSelectViewDialog.h"

namespace vldv::curves {

namespace {

CImgOpSelectViewDialog curves_for(const CImageView& view)
{
    const auto isCurve = [&view](CImageView& other) {
        const CStorageDoc& document = *other.storageDoc();
        const bool isOwn = &document == view.storageDoc() && other.getImageNumber() == view.getImageNumber();
        return !isOwn && document.getImage(other.getImageNumber()).get_dimensions_number() == 1;
    };
    return {view, string_resource(texts::selectX), false, isCurve};
}

} // namespace

bool has_x_for(const CImageView& view) { return !curves_for(view).offered().empty(); }

CImageView* ask_for_x(const CImageView& view)
{
    CImgOpSelectViewDialog dialog = curves_for(view);
    return dialog.DoModal() ? dialog.selected().front() : nullptr;
}

void take_x(CParametricCurveView& view, const CImageView& chosen)
{
    const CStorageDoc& source = *chosen.storageDoc();
    const unsigned image = chosen.getImageNumber();
    if (!view.setXDataStream(source.getImage(image)) || &source == view.storageDoc()) return;
    CStorageDoc::text_changes texts;
    for (const char* const key : {formats::curveLengthsKey, formats::voidRangesKey}) {
        const std::string told = source.getString(key, image);
        texts[key] = told.empty() ? std::nullopt : std::optional(told);
    }
    view.storageDoc()->changeTexts(view.getParamImageNumber(), texts);
    view.LoadData();
}

} // namespace vldv::curves
