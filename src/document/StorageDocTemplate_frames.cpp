#include "base/text.h"
#include "document/ImageBoundView.h"
#include "document/StorageDocTemplate.h"
#include "document/history/DocumentHold.h"
#include "document/measuring_image.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <set>

using namespace vldv;

namespace {

constexpr const char *noView = "no view shows", *noQuickView = "the quick view does not show";

std::string text_of(const char* text) { return text ? text : ""; }

/// Names that some image names as its parameter stream.
std::set<std::string> parameter_names(const CStorageDoc& document)
{
    std::set<std::string> names;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (std::string name = text_of(document.getImage(i).get_parameter_stream()); !name.empty())
            names.insert(std::move(name));
    return names;
}

bool parametrises_another(const CStorageDoc& document, unsigned image, const std::set<std::string>& parameters)
{
    // A file of many images is not looked through for each.
    return parameters.contains(document.getImage(image).get_name()) && document::measures_another(document, image);
}

bool is_quick_view(const CView* view)
{
    const auto* bound = dynamic_cast<const IImageBoundView*>(view);
    return bound && bound->isQuickView();
}

/// Surfaces are drawn from signed integers of 16 bits alone, to which every reader brings them.
bool holds_undrawn_type(const SPMDataStream& stream)
{
    return stream.get_dimensions_number() == 2 && stream.array_type() != SPM_ARRAY_INT16;
}

/// "image 2 (Force) has 3 dimensions, which no view shows"
std::string unshown_text(const CStorageDoc& document, unsigned image, const char* who)
{
    const SPMDataStream& stream = document.getImage(image);
    const unsigned count = stream.get_dimensions_number();
    const char* const name = *stream.get_description() ? stream.get_description() : stream.get_name();
    if (holds_undrawn_type(stream))
        return base::formatted("image %u (%s) holds other samples than integers of 16 bits, which %s", image, name,
                               who);
    return base::formatted("image %u (%s) has %u dimension%s, which %s", image, name, count, count == 1 ? "" : "s",
                           who);
}

void tell_unshown(CWinApp& app, const CStorageDoc& document, unsigned image, const char* who)
{
    app.host().output(base::narrow(document.GetTitle()) + ": " + unshown_text(document, image, who));
}

/// Why a document is not opened of which nothing can be shown: its images by name, behind its file.
std::string nothing_shown_text(const wchar_t* path, const CStorageDoc* document, const char* who)
{
    std::string text;
    for (unsigned i = 0; document && i < document->getImagesNumber(); ++i)
        text += unshown_text(*document, i, who) + "\n";
    if (!text.empty() && path && *path) text = base::narrow(path) + ": " + text;
    return text + string_resource(texts::cannotCreate);
}

void tell_nothing_shown(const wchar_t* path, const CStorageDoc* document, const char* who)
{
    if (CWinApp* const app = AfxGetApp())
        app->reportFailure(path ? path : L"", nothing_shown_text(path, document, who));
}

} // namespace

CStorageDocTemplate::shape_view CStorageDocTemplate::viewFor(const CStorageDoc& document) const
{
    const SPMDataStream& stream = document.getImage(openingImage);
    const unsigned count = stream.get_dimensions_number();
    if (holds_undrawn_type(stream)) return {};
    constexpr const char* parametricView = "CParametricCurveView";
    if (count == 1 && find_runtime_class(parametricView) && document::measuring_image(document, openingImage))
        return {parametricView, parametricFrame};
    return viewFor(count);
}

bool CStorageDocTemplate::showsDimensions(unsigned count) { return find_runtime_class(viewFor(count).view) != nullptr; }

CStorageDocTemplate::shape_view CStorageDocTemplate::viewFor(unsigned dimensions)
{
    switch (dimensions) {
    case 1:
        return {"CSectionView", sectionFrame};
    case 2:
        return {"CSurfMathView", surfaceFrame};
    case 3:
        return {"C3DCloudView", volumeFrame};
    default:
        return {};
    }
}

CFrameWnd* CStorageDocTemplate::CreateNewFrame(CDocument* document, CFrameWnd* other)
{
    auto* const storage = dynamic_cast<CStorageDoc*>(document);
    const CRuntimeClass* const own = find_runtime_class(viewClass());
    const bool isQuick = own && own->IsDerivedFrom(find_runtime_class("CQVSurfView"));
    CFrameWnd* frame = nullptr;
    if (storage && openingImage < storage->getImagesNumber() && !isQuick) {
        const shape_view wanted = viewFor(*storage);
        const CRuntimeClass* const shown = find_runtime_class(wanted.view);
        // A template whose view does what the shape asks for keeps its own.
        if (own && shown && own->IsDerivedFrom(shown))
            frame = CMultiDocTemplate::CreateNewFrame(document, other);
        else if (shown)
            frame = createFrame(document, wanted.view, wanted.menuId);
    } else {
        frame = CMultiDocTemplate::CreateNewFrame(document, other);
    }
    if (!frame) return nullptr;
    if (auto* const bound = dynamic_cast<IImageBoundView*>(frame->GetActiveView())) {
        bound->setImageNumber(openingImage);
        if (frame->menuId() == parametricFrame && storage)
            bound->setXDataStream(*document::measuring_image(*storage, openingImage));
        bound->LoadOptions();
    }
    return frame;
}

CFrameWnd* CStorageDocTemplate::shownFrame(CStorageDoc& document, unsigned image)
{
    openingImage = image;
    CFrameWnd* const frame = CreateNewFrame(&document, nullptr);
    CWinApp* const app = AfxGetApp();
    if (!frame && app) tell_unshown(*app, document, image, noView);
    return frame;
}

bool CStorageDocTemplate::CreateFr(const wchar_t* path, int makeVisible, CDocument* document)
{
    auto* const storage = dynamic_cast<CStorageDoc*>(document);
    unsigned created = 0;
    if (storage) {
        const CDocumentHold kept(*document);
        const std::set<std::string> parameters = parameter_names(*storage);
        // The loop counts with the member: `CreateNewFrame`, which is given a document alone, shows the image that it
        // names. An image that another one is measured against gets no frame, because it is shown as that one's axis.
        for (; openingImage < storage->getImagesNumber(); ++openingImage) {
            if (parametrises_another(*storage, openingImage, parameters)) continue;
            CFrameWnd* const frame = shownFrame(*storage, openingImage);
            if (!frame) continue;
            InitialUpdateFrame(frame, document, makeVisible != 0);
            ++created;
        }
    }
    if (created > 0) return true;
    tell_nothing_shown(path, storage, noView);
    deleteDocument(document);
    return false;
}

void CStorageDocTemplate::ShowAllViews(CStorageDoc* document, bool all)
{
    std::vector<bool> isShown(document->getImagesNumber());
    for (CView* view : std::vector<CView*>(document->views())) {
        const auto* bound = dynamic_cast<IImageBoundView*>(view);
        if (!bound || bound->isQuickView()) continue;
        if (bound->getImageNumber() < isShown.size()) isShown[bound->getImageNumber()] = true;
        if (CFrameWnd* const frame = view->GetParentFrame()) frame->ActivateFrame();
    }
    {
        // A quick view goes when no other view shows its image, which gets one of its own below. In between the
        // document may have no view at all, which must not close it.
        const CDocumentHold kept(*document);
        for (CView* view : std::vector<CView*>(document->views())) {
            const auto* bound = dynamic_cast<IImageBoundView*>(view);
            if (!is_quick_view(view) || (bound->getImageNumber() < isShown.size() && isShown[bound->getImageNumber()]))
                continue;
            if (CFrameWnd* const frame = view->GetParentFrame()) frame->DestroyFrame();
        }
    }
    const std::set<std::string> parameters = parameter_names(*document);
    for (unsigned i = 0; i < isShown.size(); ++i) {
        if (isShown[i] || (!all && parameters.contains(document->getImage(i).get_name()))) continue;
        if (CFrameWnd* const frame = shownFrame(*document, i)) InitialUpdateFrame(frame, document, true);
    }
}

void CStorageDocTemplate::ShowView(CStorageDoc* document, int image)
{
    if (image < 0 || static_cast<unsigned>(image) >= document->getImagesNumber()) return;
    const bool isCurve = document->getImage(static_cast<unsigned>(image)).get_dimensions_number() == 1;
    bool isSuitable = false;
    for (CView* view : std::vector<CView*>(document->views())) {
        const auto* bound = dynamic_cast<IImageBoundView*>(view);
        if (!bound || bound->getImageNumber() != static_cast<unsigned>(image)) continue;
        if (CFrameWnd* const frame = view->GetParentFrame()) frame->ActivateFrame();
        const std::string kind = bound->viewKind();
        isSuitable |= kind == "CSurfMathView" || (isCurve && kind == "CSectionView");
    }
    if (isSuitable) return;
    if (CFrameWnd* const frame = shownFrame(*document, static_cast<unsigned>(image)))
        InitialUpdateFrame(frame, document, true);
}

void CStorageDocTemplate::PositionNextFrame(CFrameWnd* frame)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    // Frames stand in rows from the upper left corner; a row is as high as its highest frame.
    const CSize size = frame->GetWindowRect().Size();
    if (left > 0 && left + size.cx > app->host().frameArea().Width()) {
        top += rowHeight;
        left = rowHeight = 0;
    }
    const CPoint corner = app->host().frameArea().TopLeft();
    frame->MoveWindow(CRect({corner.x + left, corner.y + top}, size));
    left += size.cx;
    rowHeight = std::max(rowHeight, size.cy);
}

CDocument* CStorageDocTemplate::QuickViewOpenDocumentFile(const wchar_t* path, int makeVisible)
{
    CDocument* const document = OpenDocumentFileNoMRU(path, false);
    auto* const storage = dynamic_cast<CStorageDoc*>(document);
    if (!storage) return nullptr;
    CWinApp* const app = AfxGetApp();
    unsigned created = 0;
    for (unsigned i = 0; i < storage->getImagesNumber(); ++i) {
        if (storage->getImage(i).get_dimensions_number() != 2) {
            if (app) tell_unshown(*app, *storage, i, noQuickView);
            continue;
        }
        CFrameWnd* const frame = createFrame(document, "CQVSurfView", quickViewFrame, "CQVChildFrame");
        auto* const bound = frame ? dynamic_cast<IImageBoundView*>(frame->GetActiveView()) : nullptr;
        if (!bound) continue;
        bound->setImageNumber(i);
        bound->LoadOptions();
        InitialUpdateFrame(frame, document, makeVisible != 0);
        PositionNextFrame(frame);
        ++created;
    }
    if (created > 0) return document;
    tell_nothing_shown(path, storage, noQuickView);
    deleteDocument(document);
    return nullptr;
}
