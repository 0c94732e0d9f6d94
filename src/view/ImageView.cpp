#include "view/ImageView.h"

#include "base/text.h"
#include "base/units.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "view/ChildFrame.h"
#include "view/image/VolumeSource.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

namespace {

constexpr view::option_row imageOptions[] = {
    {"duplicate_3d_cloud(Copy 3D Force Volume data),enum,Image data,Force Volume,Extract Curves", "Force Volume"},
    {"merge_extracted_fv_curves(Merge extracted force volume curves),boolean", "true"},
};

} // namespace

CImageView::~CImageView()
{
    if (parentView) parentView->OnChildViewClosed(this);
    for (CImageView* child : childViews) child->parentView = nullptr;
}

CStorageDoc* CImageView::storageDoc() const noexcept { return dynamic_cast<CStorageDoc*>(GetDocument()); }

void CImageView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CDCView::GetOptionsList(nullptr, &before);
    if (vars) CDCView::GetOptionsList(vars, count);
    view::list_options(imageOptions, before, vars, count);
}

void CImageView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    const document::hint told = document::hint::unpacked(hint);
    const bool isOurs = told.image == imageNumber;
    switch (told.code) {
    case document::hintNewData:
        CDCView::OnUpdate(sender, hint, object);
        InitImageView();
        LoadData();
        Invalidate(true);
        break;
    case document::hintNewSize:
        if (isOurs) CDCView::OnUpdate(sender, hint, object);
        break;
    case document::hintDataChanged:
        if (!isOurs) break;
        if (told.reloads) LoadData();
        Invalidate(true);
        break;
    case document::hintAxesChanged:
        if (document::axis_change::isOf(hint, imageNumber)) LoadOptions("^Axis[XYZ]$");
        break;
    case document::hintScaleChanged:
        if (!told.reloads && !hasFocus()) break;
        LoadData();
        Invalidate(true);
        break;
    case document::hintBringToFront:
        if (isOurs) BringToFront();
        break;
    case document::hintChangeSubimage:
        if (const double* sub = std::get_if<double>(&object); isOurs && sub)
            setActiveSubimage(static_cast<unsigned>(std::max(*sub, 0.0)));
        break;
    default:
        break;
    }
}

bool CImageView::ObjectAction(ObjectActionType action, const char* name)
{
    CStorageDoc* const document = storageDoc();
    if (!document || !document->ObjectAction(imageNumber, action, name)) return false;
    document->UpdateAllViews(nullptr, action == OBJECT_DELETE ? document::data_hint(imageNumber)
                                                              : document::drawing_hint(imageNumber));
    return true;
}

void CImageView::InitImageView()
{
    if (auto* const frame = dynamic_cast<CChildFrame*>(GetParentFrame())) frame->OnInitImageView(this);
}

void CImageView::LoadData()
{
    const CStorageDoc* const document = storageDoc();
    if (!document || imageNumber >= document->getImagesNumber()) return;
    const unsigned count = document->getSubImagesNumber(imageNumber);
    subImageNumber = std::min(subImageNumber, count ? count - 1 : 0);
    if (auto* const frame = dynamic_cast<CChildFrame*>(GetParentFrame())) frame->OnLoadData();
}

void CImageView::setActiveSubimage(unsigned sub)
{
    const CStorageDoc* const document = storageDoc();
    if (!document || imageNumber >= document->getImagesNumber()) return;
    const unsigned count = document->getSubImagesNumber(imageNumber);
    sub = std::min(sub, count ? count - 1 : 0);
    if (sub == subImageNumber) return;
    subImageNumber = sub;
    forgetPlace();
    showSubImage();
    UpdateSelections();
}

void CImageView::showSubImage() { OnUpdate(nullptr, document::data_hint(imageNumber), {}); }

void CImageView::getBestScale(double* low, double* high, const char** units)
{
    const CStorageDoc* const document = storageDoc();
    if (!document || !document->isImageOk(imageNumber)) return;
    CMinMaxInfo range;
    document->getMinMaxInfo(imageNumber, range, subImageNumber);
    readWell(range.minimum, range.maximum, low, high, units);
}

void CImageView::readWell(int minimum, int maximum, double* low, double* high, const char** units) const
{
    const CStorageDoc* const document = storageDoc();
    // Views that do not let choose an axis have no such option: they show the first.
    const auto chosen = static_cast<unsigned>(static_cast<int>(options["AxisZ"]));
    const VLAxis& axis = document->getAxis(imageNumber, chosen, unsigned(-1));
    double lowest = minimum * axis.scale + axis.start, highest = maximum * axis.scale + axis.start;
    if (lowest > highest) std::swap(lowest, highest); // of an axis that falls
    // Both in the unit of the larger, or they could not be compared.
    double larger = std::max(std::fabs(lowest), std::fabs(highest));
    const char* const best = default_units(axis.get_units(), &larger);
    lowest = convert_size(axis.get_units(), best, lowest);
    highest = convert_size(axis.get_units(), best, highest);
    if (low) *low = lowest;
    if (high) *high = highest;
    if (units) *units = best;
}

void CImageView::SetParentView(CImageView* parent_)
{
    if (parentView && parentView != parent_) parentView->OnChildViewClosed(this);
    parentView = parent_;
    if (parentView && std::ranges::find(parentView->childViews, this) == parentView->childViews.end())
        parentView->childViews.push_back(this);
}

void CImageView::OnChildViewClosed(CView* view) { std::erase(childViews, view); }

void CImageView::OnFrameClosed()
{
    if (parentView) parentView->OnChildViewClosed(this);
    parentView = nullptr;
    for (CImageView* child : std::exchange(childViews, {})) {
        child->parentView = nullptr;
        child->closeFrame();
    }
}

void CImageView::closeFrame()
{
    if (CFrameWnd* const frame = GetParentFrame())
        frame->DestroyFrame();
    else if (GetDocument())
        GetDocument()->RemoveView(this);
}

void CImageView::BringToFront()
{
    if (CFrameWnd* const frame = GetParentFrame()) frame->ActivateFrame();
}

bool CImageView::OnKeyDown(unsigned key)
{
    const CStorageDoc* const document = storageDoc();
    if (key == VK_TAB && document && imageNumber < document->getImagesNumber()) {
        const CWinApp* const app = AfxGetApp();
        IScreen* const screen = app ? const_cast<CWinApp*>(app)->host().screen() : nullptr;
        const bool back = screen && screen->isKeyDown(VK_SHIFT);
        if (const unsigned count = document->getSubImagesNumber(imageNumber); count > 0)
            // Adding the largest unsigned number goes one back, since the sum wraps round; `count` keeps it from going
            // below 0.
            setActiveSubimage((subImageNumber + count + (back ? unsigned(-1) : 1u)) % count);
    }
    return CDCView::OnKeyDown(key) || key == VK_TAB;
}

void CImageView::OnLButtonUp(unsigned, CPoint) { UpdateSelections(); }

void CImageView::Report(const char* text) { SetMessageText(base::widen(text ? text : "")); }

// Without a function in progress there is no stream that drawings could belong to.
void CImageView::Decorate(const VLPluginDecoration*, unsigned, int, VLPluginDecorationTarget, int) {}

void CImageView::PlotHistogram(IPluginTable*) {}

std::vector<VLPluginDataSelection> CImageView::selections()
{
    const int count = std::max(GetDataSelection(nullptr, 0), 0);
    std::vector<VLPluginDataSelection> found(static_cast<std::size_t>(count));
    for (VLPluginDataSelection& each : found) each = {pluginSelectionSize, pluginSelectionVersion, 0, {}};
    const int filled = count > 0 ? GetDataSelection(found.data(), static_cast<unsigned>(count)) : 0;
    found.resize(static_cast<std::size_t>(std::clamp(filled, 0, count)));
    return found;
}

IVolumeSource* CImageView::Get3DCloudView() const
{
    if (GetDocument())
        for (CView* view : GetDocument()->views())
            if (auto* volume = dynamic_cast<IVolumeSource*>(view)) return volume;
    return nullptr;
}
