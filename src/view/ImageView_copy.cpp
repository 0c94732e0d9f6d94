#include "base/text.h"
#include "base/variables/global_option.h"
#include "document/StorageDoc.h"
#include "document/StorageDocTemplate.h"
#include "document/document_table.h"
#include "document/samples/extracted_texts.h"
#include "document/samples/point_counts.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "view/ImageView.h"
#include "view/image/VolumeSource.h"
#include "view/image/stream_outline.h"

#include <algorithm>
#include <cstring>

using namespace vldv;

namespace {

enum volume_copy { onlyImage = 0, withVolume = 1, curvesOnly = 2 };

/// The samples at (x, y) through dimension 2 of every sub-image, one curve behind the other.
void append_curves(SPMDataStream& target, const SPMDataStream& volume, unsigned x, unsigned y)
{
    const std::size_t width = volume.get_dimension(0).length, height = volume.get_dimension(1).length;
    const std::size_t length = volume.get_dimension(2).length;
    const std::size_t sample = volume.array_element_size();
    const std::size_t curves = volume.array_length() / (width * height * length);
    const auto* from = static_cast<const char*>(volume.array_data());
    std::vector<char> column(curves * length * sample);
    // Sub-images and, in each, the layers of dimension 2 follow one another in memory, so that one number counts
    // through the points of all curves: layer i begins at i * height * width.
    for (std::size_t i = 0; i < curves * length; ++i)
        std::memcpy(column.data() + i * sample, from + ((i * height + y) * width + x) * sample, sample);
    target.set_array(column.data(), static_cast<unsigned>(curves * length), target.array_length());
}

/// "10 x 6": the lengths of a stream.
std::string shape_text(const SPMDataStream& stream)
{
    std::string text;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        text += (i ? " x " : "") + std::to_string(stream.get_dimension(i).length);
    return text;
}

/// In all views of an image. Nothing where the document went, as one does that no window shows.
void show_sub_image(const CDocTemplate& maker, const CStorageDoc* document, unsigned image, unsigned sub)
{
    const auto& open = maker.documents();
    if (std::ranges::none_of(open, [document](const auto& each) { return each.get() == document; })) return;
    for (CView* const each : document->views())
        if (auto* const shown = dynamic_cast<CImageView*>(each); shown && shown->getImageNumber() == image)
            shown->setActiveSubimage(sub);
}

} // namespace

void CImageView::copy_image(SPMDataStream& target, CImageView& source)
{
    const CStorageDoc* const document = source.storageDoc();
    if (!document || source.imageNumber >= document->getImagesNumber()) return;
    const SPMDataStream& stream = document->getImage(source.imageNumber);
    if (const std::vector<VLPluginDataSelection> selected = source.selections(); !selected.empty()) {
        view::copy_outline(target, stream);
        source.getSelectionCopy(target, selected.data(), static_cast<unsigned>(selected.size()));
        if (target.array_length() > 0) return;
    }
    target = stream;
}

bool CImageView::choosesVolumeCopy()
{
    const SPMVar usual = base::global_option("default_plugin_options");
    const bool asksWithShift = usual.type == SPM_VAR_NONE || static_cast<bool>(usual);
    CWinApp* const app = AfxGetApp();
    IScreen* const screen = app ? app->host().screen() : nullptr;
    const bool shift = screen && screen->isKeyDown(VK_SHIFT);
    return asksWithShift != shift || ShowOptionsDlgWithInterface("clone3dcloudopt");
}

namespace {

/// An image of the document goes along, as what another one is measured against.
void copy_with_texts(CStorageDoc& copy, const CStorageDoc& document, const SPMDataStream& stream)
{
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (&document.getImage(i) == &stream) {
            copy.AddNewImages(&stream, 1);
            copy.copyStrings(&document, copy.getImagesNumber() - 1, i);
        }
}

} // namespace

void CImageView::OnViewClone()
{
    CStorageDoc* const document = storageDoc();
    CDocTemplate* const maker = document ? document->GetDocTemplate() : nullptr;
    if (!maker || imageNumber >= document->getImagesNumber()) return;
    IVolumeSource* const cloud =
        document->getImage(imageNumber).get_dimensions_number() == 2 ? Get3DCloudView() : nullptr;
    if (cloud && !choosesVolumeCopy()) return;
    const int kind = cloud ? intOption("duplicate_3d_cloud") : onlyImage;
    if (kind >= curvesOnly) {
        if (CStorageDoc* const curves = extract_curves(*cloud)) openFrames(*curves);
        return;
    }
    auto* const copy = dynamic_cast<CStorageDoc*>(maker->CreateNewDocument());
    if (!copy) return;
    if (kind == withVolume) {
        copy->AddNewImages(&document->getImage(cloud->getVolumeImage()), 1);
        copy->copyStrings(document, 0, cloud->getVolumeImage());
    }
    SPMDataStream own;
    copy_image(own, *this);
    if (copy->getImagesNumber() > 0 && std::strcmp(copy->getImage(0).get_name(), own.get_name()) == 0)
        own.set_name((std::string(own.get_name()) + "_").c_str());
    copy->AddNewImages(&own, 1);
    const unsigned added = copy->getImagesNumber() - 1;
    document->deriveTitle(*copy);
    copy->copyStrings(document, document::documentTable, document::documentTable);
    copy->copyStrings(document, added, imageNumber);
    copy->copyDecorations(*document, added, imageNumber);
    if (const SPMDataStream* const positions = getParameterStream()) copy_with_texts(*copy, *document, *positions);
    copy->SetModifiedFlag(true);
    // Who has forgotten a selection takes the part for the whole, and finds out when the whole is gone.
    const std::string part = shape_text(copy->getImage(added)), whole = shape_text(document->getImage(imageNumber));
    if (part == whole) {
        openFrames(*copy);
        return show_sub_image(*maker, copy, added, subImageNumber);
    }
    document::keep_part_of_points(*copy, added, *document, imageNumber);
    copy->SetTitle((copy->GetTitle() + L" (selection)").c_str());
    openFrames(*copy);
    show_sub_image(*maker, copy, added, subImageNumber);
    SetMessageText(base::widen("Only the selected part is in the copy: " + part + " of " + whole + " samples"));
}

/// A frame on each image.
void CImageView::openFrames(CStorageDoc& document)
{
    auto* const maker = dynamic_cast<CStorageDocTemplate*>(document.GetDocTemplate());
    if (!maker) return;
    maker->setOpeningImage(0);
    maker->CreateFr(document.GetPathName().c_str(), true, &document);
}

CStorageDoc* CImageView::extract_curves(IVolumeSource& cloud)
{
    const SPMDataStream& volume = cloud.getVolume();
    if (volume.get_dimensions_number() != 3) return nullptr;
    // Selections count in samples of this view's data, whose grid may differ from the volume's.
    const auto sourceWidth = static_cast<std::int64_t>(getSourceWidth());
    const auto sourceHeight = static_cast<std::int64_t>(getSourceHeight());
    if (sourceWidth == 0 || sourceHeight == 0) return nullptr;
    const std::int64_t countX = volume.get_dimension(0).length, countY = volume.get_dimension(1).length;
    const bool merge = isOptionOn("merge_extracted_fv_curves");
    const document::extracted_texts texts = textsOf(cloud);
    CStorageDoc* target = nullptr;
    for (const VLPluginDataSelection& each : selections()) {
        if (each.kind != SELECTION_RECTANGLE) continue;
        // Both corners go to the grid by the same rule and the end is left out: selections that share an edge share no
        // curve.
        const auto cellX = [&](int corner) {
            return std::clamp<std::int64_t>(corner * countX / sourceWidth, 0, countX);
        };
        const auto cellY = [&](int corner) {
            return std::clamp<std::int64_t>(corner * countY / sourceHeight, 0, countY);
        };
        for (std::int64_t y = cellY(each.data[1]); y < cellY(each.data[3]); ++y)
            for (std::int64_t x = cellX(each.data[0]); x < cellX(each.data[2]); ++x)
                target = extractCurve(cloud, texts, static_cast<int>(x), static_cast<int>(y), target, merge);
    }
    if (target) target->UpdateAllViews(nullptr, document::data_hint(target->getImagesNumber() - 1));
    return target;
}

document::extracted_texts CImageView::textsOf(IVolumeSource& cloud) const
{
    const CStorageDoc* const document = storageDoc();
    const bool isThere = document && cloud.getVolumeImage() < document->getImagesNumber();
    return isThere ? document::extracted_texts(*document, cloud.getVolumeImage(), cloud.getVolume())
                   : document::extracted_texts();
}

CStorageDoc* CImageView::ExtractCurveFrom3DCloud(IVolumeSource& cloud, int x, int y, CStorageDoc* target, bool merge)
{
    return extractCurve(cloud, textsOf(cloud), x, y, target, merge);
}

CStorageDoc* CImageView::extractCurve(IVolumeSource& cloud, const document::extracted_texts& texts, int x, int y,
                                      CStorageDoc* target, bool merge)
{
    const SPMDataStream& volume = cloud.getVolume();
    if (volume.get_dimensions_number() != 3 || volume.array_length() == 0) return target;
    if (x < 0 || y < 0 || static_cast<unsigned>(x) >= volume.get_dimension(0).length ||
        static_cast<unsigned>(y) >= volume.get_dimension(1).length)
        return target;
    if (!target) {
        CDocTemplate* const maker = GetDocument() ? GetDocument()->GetDocTemplate() : nullptr;
        target = maker ? dynamic_cast<CStorageDoc*>(maker->CreateNewDocument()) : nullptr;
        if (!target) return nullptr;
        if (CStorageDoc* const document = storageDoc()) document->deriveTitle(*target);
        target->SetModifiedFlag(true);
    }
    const std::string place = base::formatted("(%d:%d)", x, y);
    const unsigned count = target->getImagesNumber();
    const bool extends = merge && count > 0;
    if (!extends) {
        SPMDataStream stream;
        view::copy_outline(stream, volume);
        stream.set_name((std::string(volume.get_name()) + "_" + std::to_string(count + 1)).c_str());
        if (!merge) stream.set_description((std::string(volume.get_description()) + place).c_str());
        stream.set_subimage_names(static_cast<const smart_string*>(nullptr), 0);
        stream.set_dimension(0, volume.get_dimension(2));
        append_curves(stream, volume, static_cast<unsigned>(x), static_cast<unsigned>(y));
        target->AddNewImages(&stream, 1);
    } else {
        append_curves(target->getImage(count - 1), volume, static_cast<unsigned>(x), static_cast<unsigned>(y));
        target->revalidateImage(count - 1);
    }
    texts.addTo(*target, target->getImagesNumber() - 1, static_cast<unsigned>(x), static_cast<unsigned>(y));
    if (merge) {
        SPMDataStream& stream = target->getImage(target->getImagesNumber() - 1);
        std::vector<smart_string> names = stream.subimage_names();
        names.resize(stream.array_length() / stream.get_dimension(0).length, smart_string(place));
        stream.set_subimage_names(names.data(), static_cast<unsigned>(names.size()));
    }
    return target;
}
